"""What becomes of a display's calibration where somebody loads a plain ramp, as drivers do by themselves."""

import pytest

from desk import BRIGHTNESS, WARMTH
from machine import Logind

OFF, ON = "noctra://off", "noctra://on"
PLAIN = [list(range(0, 65536, 257))] * 3
REFRESH = "Refreshing displays"


def load_plain_ramps(desk):
    """On the three displays."""
    desk.server.write([PLAIN] * 3)


def after_a_change_of_the_screen(desk, program):
    load_plain_ramps(desk)
    desk.server.announce_change()


def after_a_mode_change(desk, program):
    desk.server.unplug(1)
    desk.server.plug(1)
    load_plain_ramps(desk)


def after_a_slow_mode_change(desk, program):
    desk.server.unplug(1)
    assert program.says("disconnected - cleaning up")
    load_plain_ramps(desk)
    desk.server.plug(1)


def after_a_wake(desk, program):
    load_plain_ramps(desk)
    desk.logind.sleep_and_wake()


@pytest.mark.parametrize("filter", [(WARMTH, BRIGHTNESS), (0, 1)], ids=["dimmed", "to-no-effect"])
@pytest.mark.parametrize("come", [after_a_change_of_the_screen, after_a_mode_change,
                                  after_a_slow_mode_change, after_a_wake])
def test_a_calibration_outlives_plain_ramps_that_come_over_the_filter(desk, come, filter):
    desk.logind = Logind(desk)
    desk.prefer(filterIntensity=filter[0], filterBrightness=filter[1])
    program = desk.start()
    desk.command(program, ON)
    come(desk, program)
    assert program.says("Display settle pass reapply")
    assert desk.becomes_dimmed(*filter)
    desk.command(program, OFF)
    assert desk.is_untouched()
    assert desk.ends_cleanly(program)


@pytest.mark.parametrize("come", [after_a_change_of_the_screen, after_a_slow_mode_change])
def test_a_calibration_comes_back_also_where_the_end_is_faster_than_the_refresh(desk, come):
    program = desk.start_dimmed()
    come(desk, program)
    assert desk.ends_cleanly(program)


def test_a_killed_programs_record_keeps_a_calibration_as_long_as_the_server_lives(desk):
    desk.start_dimmed().kill()
    load_plain_ramps(desk)
    desk.start_dimmed().kill()
    load_plain_ramps(desk)
    desk.server.root.delete_property(desk.server.atom("_NOCTRA_WAS_HERE"))  # a new server has none
    plain = desk.before = desk.server.tables()
    program = desk.start()
    assert desk.is_untouched() and plain[0] == PLAIN
    assert desk.ends_cleanly(program)


def test_a_plain_ramp_that_comes_while_the_filter_is_off_is_what_the_display_has(desk):
    program = desk.start_dimmed()
    desk.command(program, OFF)
    load_plain_ramps(desk)
    desk.before = desk.server.tables()
    desk.server.announce_change()
    assert program.says(REFRESH)
    desk.command(program, ON)
    assert desk.becomes_dimmed()
    desk.command(program, OFF)
    assert desk.is_untouched()
    assert desk.ends_cleanly(program)
