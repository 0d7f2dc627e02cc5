"""The command line, the first lines of the log, and starts that fail."""

import re

import pytest


def test_the_log_begins_with_version_system_and_screens(desk):
    program = desk.start()
    first, second, third = program.messages()[:3]
    assert first == "Noctra v2.23 initialized"
    assert second.startswith("Linux ")
    assert third == "Screens: 3"
    assert re.match(r"\[[0-2]\d:[0-5]\d:[0-5]\d\.\d{3}\] ", program.lines[0])
    assert not program.errors


@pytest.mark.parametrize("arguments, status, output", [
    (["--version"], 0, "noctra 2.23"), (["--help"], 0, "noctra"), (["-h"], 0, "noctra"), (["foo"], 2, None), (["--foo"], 2, None),
    ([""], 2, None), (["noctra://on", "foo"], 2, None)])
def test_questions_on_the_command_line_need_no_display(desk, arguments, status, output):
    program = desk.launch(*arguments, environment={"DISPLAY": None})
    assert program.ends() == status
    if output:
        assert output in program.lines[0] and not program.errors
    else:
        assert len(program.errors) == 1 and "usage" in program.errors[0] and not program.lines


@pytest.mark.parametrize("display, wayland, reason", [
    (None, None, "DISPLAY is not set"), (None, "wayland-1", "a Wayland session"), (":7654", None, ":7654"),
    ("nonsense", None, "nonsense")])
def test_a_start_without_a_display_is_refused_with_one_line(desk, display, wayland, reason):
    program = desk.launch(environment={"DISPLAY": display, "WAYLAND_DISPLAY": wayland})
    assert program.ends() == 1
    assert len(program.errors) == 1 and reason in program.errors[0]


def test_xwayland_is_refused_with_one_line_that_says_so(desk):
    running = desk.start()
    desk.server.set_property(1, "RANDR Emulation", b"\1")
    handing_over = desk.launch("noctra://on")
    assert handing_over.ends() == 0 and not handing_over.errors and desk.becomes_dimmed()
    assert desk.ends_cleanly(running)
    for arguments in [], ["noctra://on"]:
        program = desk.launch(*arguments)
        assert program.ends() == 1
        assert len(program.errors) == 1 and "Xwayland" in program.errors[0] and not program.lines
    assert desk.is_untouched()
    assert desk.launch("--help").ends() == 0
