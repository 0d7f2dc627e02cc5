"""The item as a hand works it, in a tray of the X server and under GNOME's shell."""

import pathlib

from desk import wait_until
from panel import ELSEWHERE, FIRST_DISPLAY, Hands, middle_of

RED = 0xFF453B  # of the item while the filter is on
BENCH = pathlib.Path(__file__).parents[2] / "bench/tray"
GNOME_SHELL = """
import sys; sys.path.insert(0, sys.argv[1])
from host import Gio, Host
class Shell(Host):
    def _register(self, bus, sender, *rest):
        print("item", sender, flush=True)
        super()._register(bus, sender, *rest)
shell = Shell()
Gio.bus_own_name_on_connection(shell._bus, "org.gnome.Shell", 0, None, None)
shell.serve(600)
"""


def test_a_click_in_a_tray_of_the_x_server_is_one_when_the_button_comes_up_on_the_item(desk):
    hands = Hands(desk)
    desk.xrandr("--output", "DUMMY0", "--mode", "800x600")
    desk.run("trayer", "--edge", "top", "--align", "right", "--widthtype", "request", "--height", "26")
    program = desk.start_dimmed()
    corner = FIRST_DISPLAY[2] - 30, 0, 30, 30
    item = wait_until(lambda: middle_of(desk, corner, RED))
    assert item
    hands.do("mousemove", *item, "mousedown", 1)
    desk.command(program, "noctra://on")  # what the press has done is done by now
    assert not hands.windows()
    hands.do("mousemove", *ELSEWHERE, "mouseup", 1)
    desk.command(program, "noctra://on")
    assert not hands.windows(), "slid off"
    hands.click(*item)
    assert wait_until(hands.windows)
    hands.click(*item)
    assert wait_until(lambda: not hands.windows())

    hands.click(*item, button=3)
    assert wait_until(lambda: hands.do("key", "ctrl+q") or program.child.poll() is not None)
    assert program.ends() == 0 and desk.is_untouched()


def test_gnomes_shell_which_keeps_left_clicks_for_the_menu_is_offered_the_panel_there(desk):
    hands = Hands(desk)
    shell = desk.run("/usr/bin/python3", "-B", "-c", GNOME_SHELL, BENCH)
    assert wait_until(lambda: desk.bus.has("org.gnome.Shell"))
    program = desk.start()
    assert shell.says("item")

    def call(path, interface, method, signature, *arguments):
        return desk.bus.client().call_blocking(shell.lines[0].split()[1], path, interface, method, signature, arguments)
    kde = "org.kde.StatusNotifierItem"
    properties = call("/StatusNotifierItem", "org.freedesktop.DBus.Properties", "GetAll", "s", kde)
    assert (properties["Title"], properties["Id"]) == ("Noctra", "Noctra")
    _, (_, _, rows) = call(properties["Menu"], "com.canonical.dbusmenu", "GetLayout", "iias", 0, 1, [])
    rows = [row[1] for row in rows]
    assert [row["label"].replace("_", "") for row in rows] == ["Show Noctra", "Quit Noctra"]
    assert not any("shortcut" in row for row in rows)
    call("/StatusNotifierItem", kde, "SecondaryActivate", "ii", 0, 0)
    assert wait_until(hands.windows)
    assert desk.ends_cleanly(program)
