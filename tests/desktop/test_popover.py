"""When the panel opens by itself, how high it is, and what a change of the displays does to it. Its window has
a line more on each side."""

import pathlib

from desk import wait_until
from panel import ELSEWHERE


def test_it_opens_by_itself_at_the_very_first_start_only(desk, panel):
    desk.preferences.write_text("")
    program = desk.start()
    assert panel.opens()
    program.kill()  # not before it is noted for good
    assert "hasShownFirstRunPopover=true" in desk.preferences.read_text()
    program = desk.start()
    desk.command(program, "noctra://on")
    assert not panel.hands.windows()
    assert desk.ends_cleanly(program)


def test_it_is_as_high_as_the_screen_lets_it_and_follows_the_screen(desk, panel):
    for output in "DUMMY1", "DUMMY2":  # a pointer that is pushed out stays here
        desk.xrandr("--output", output, "--off")
    program = desk.start()
    for width, height, of_panel in (1920, 1080, 540), (800, 500, 476), (640, 350, 360):
        # Xorg's dummy driver takes any mode; the numbers beside the size do not matter to it.
        name = f"{width}x{height}new"
        desk.xrandr("--newmode", name, 60, *[width] * 4, *[height] * 4)
        desk.xrandr("--addmode", "DUMMY0", name)
        desk.xrandr("--output", "DUMMY0", "--mode", name)
        if not panel.hands.windows():
            desk.command(program, "noctra://show")  # else it follows by itself
        assert wait_until(lambda: panel.hands.windows() == [(width - 322, 0, 322, of_panel + 2)])
    assert desk.ends_cleanly(program)


def test_without_a_display_it_is_as_high_as_can_be_hoped_for(desk, panel):
    for output in "DUMMY0", "DUMMY1", "DUMMY2":
        desk.xrandr("--output", output, "--off")
    program = desk.start()
    desk.command(program, "noctra://show")
    assert [box[2:] for box in wait_until(panel.hands.windows)] == [(322, 518)]


def test_without_a_tray_it_opens_in_the_corner_and_that_is_said_once(desk, panel):
    program = desk.start()
    assert program.says("Tray: none on this desktop")
    for arguments in ["noctra://show"], []:
        assert desk.launch(*arguments).ends() == 0
        assert panel.opens() == [(478, 0, 322, 542)]
        panel.hands.click(*ELSEWHERE)
        assert panel.goes()
    assert program.count("Tray: none") == 1
    assert desk.ends_cleanly(program)


def test_the_icons_self_test_leaves_two_png_files_and_quits(desk, panel):
    desk.preferences.write_text("")
    off, active, report = files = [pathlib.Path("/tmp/noctra_menubar_" + name)
                                   for name in ("off.png", "active.png", "icon_test.txt")]
    for file in files:
        file.unlink(missing_ok=True)
    assert desk.launch(environment={"NOCTRA_MENUBAR_ICON_TEST": "1"}).ends() == 0
    assert "hasShownFirstRunPopover" not in desk.preferences.read_text()
    assert off.read_bytes()[:8] == active.read_bytes()[:8] == b"\x89PNG\r\n\x1a\n"
    assert off.read_bytes() != active.read_bytes()
    for line in f"dumpStatusIcon(off) -> {off}", f"dumpStatusIcon(active) -> {active}":
        assert line in report.read_text()
    assert desk.is_untouched()
    for file in files:
        file.unlink()

    desk.start()
    test = desk.launch(environment={"NOCTRA_MENUBAR_ICON_TEST": "1"})
    assert test.ends() == 1 and len(test.errors) == 1, "beside a running one"
    assert not report.exists()
