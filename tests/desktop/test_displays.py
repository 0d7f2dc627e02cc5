"""Displays that come, go and change while the filter is on, as the log and the tables show it."""

import re
import signal
import time

import pytest

REFRESH, SETTLED = "Refreshing displays (", "Display settle pass reapply"


def expect_refreshes(desk, program, count):
    """What a burst of changes leads to, to its end: one refresh and one settle pass more than before."""
    assert program.says(SETTLED, count)
    assert program.count(REFRESH) == program.count(SETTLED) == count
    assert desk.is_dimmed()


def test_changes_are_told_display_by_display_and_answered_with_one_refresh_each(desk):
    program = desk.start_dimmed()
    changes = (lambda: desk.server.unplug(2), lambda: desk.server.plug(2), lambda: desk.server.plug(3),
               lambda: desk.xrandr("--addmode", "DUMMY1", "1280x720"),
               lambda: desk.xrandr("--output", "DUMMY1", "--mode", "1280x720"),
               lambda: desk.xrandr("--output", "DUMMY1", "--pos", "100x500"))
    for count, change in enumerate(changes, 1):
        change()
        expect_refreshes(desk, program, count)
    assert len(desk.server.lit()) == 4
    log = "\n".join(program.messages())
    for line in (r"^Display \d+ configuration begin$", r"^Display \d+ disconnected - cleaning up$",
                 r"^Display \d+ connected$", r"callback flags=32\)$", r"callback flags=16\)$",
                 r"(flags: (8|10|2)\)|connected)$"):  # a server may let the change be seen as off and on again
        assert re.search(line, log, re.MULTILINE), line
    assert desk.ends_cleanly(program)


def test_a_burst_of_changes_is_answered_once(desk):
    program = desk.start_dimmed()
    began = time.monotonic()
    for _ in range(5):
        desk.server.unplug(1)
        desk.server.plug(1)
    desk.server.unplug(0)
    assert time.monotonic() - began < 0.4, "no burst"
    expect_refreshes(desk, program, 1)
    assert desk.ends_cleanly(program)


@pytest.mark.parametrize("number", [signal.SIGTERM, signal.SIGINT, signal.SIGHUP])
def test_an_output_that_is_dark_at_the_end_comes_back_untinted(desk, number):
    program = desk.start_dimmed()
    desk.server.unplug(2)
    assert desk.ends_cleanly(program, number)
    desk.server.plug(2)
    assert desk.is_untouched()
