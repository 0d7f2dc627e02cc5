"""The item in the trays that people have: what it looks like, what clicks on it do, and that it is there
whenever a tray is."""

import pathlib
import time

import pytest
from Xlib import Xatom

from desk import wait_until
from machine import TrayHost
from panel import ELSEWHERE, FIRST_DISPLAY, at, middle_of, pixels

RED, WHITE, BLACK = TrayHost.ACTIVE, TrayHost.WHITE, TrayHost.BLACK
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


@pytest.fixture(params=["notifier", "embedded"])
def host(desk, request):
    return TrayHost(desk, request.param)


def place(desk, colour):
    """The middle of the item, if it is there in that colour."""
    return middle_of(desk, (FIRST_DISPLAY[2] - TrayHost.BAR, 0, TrayHost.BAR, TrayHost.BAR), colour)


def item(desk, colour):
    found = wait_until(lambda: place(desk, colour))
    assert found, "the item is not in the tray"
    return found


def open_and_close(desk, panel, colour=RED):
    panel.hands.click(*item(desk, colour))
    assert panel.opens()
    panel.hands.click(*ELSEWHERE)
    assert panel.goes()


def test_the_item_shows_the_filter_and_opens_and_closes_the_panel(desk, panel, host):
    host.start()
    program = desk.start()
    where = item(desk, WHITE)  # a template on a dark bar
    kind = "system tray of the X server" if host.kind == "embedded" else "StatusNotifierItem"
    assert program.count("Tray: " + kind) == 1
    desk.command(program, "noctra://on")
    item(desk, RED)
    desk.command(program, "noctra://off")
    item(desk, WHITE)

    def on_the_ground_and_on_the_item(box):
        panel.hands.click(*at(box, 0.5, 0.65))
        panel.hands.click(*where)

    for closing in (on_the_ground_and_on_the_item, lambda box: panel.hands.click(*ELSEWHERE),
                    lambda box: panel.hands.type("Escape")):
        panel.hands.click(*where)
        ((x, y, width, height),) = boxes = panel.opens()
        assert x >= 0 and x + width <= 800 and y + height <= 600
        assert not (x <= where[0] < x + width and y <= where[1] < y + height), "the panel lies over the item"
        closing(boxes[0])
        assert panel.goes()
    assert desk.ends_cleanly(program)


def test_a_right_click_offers_to_quit_and_nothing_else(desk, panel, host):
    host.start()
    program = desk.start_dimmed()
    where = item(desk, RED)
    below = FIRST_DISPLAY[2] - 250, 0, 250, 100
    panel.hands.move(*where)
    looks = [pixels(desk, below)]
    wait_until(lambda: looks.append(pixels(desk, below)) or looks[-1] == looks[-2], 1)
    panel.hands.click(*where, button=3)
    assert wait_until(lambda: pixels(desk, below) != looks[-1]), "no menu comes"
    assert not panel.hands.windows()
    panel.hands.type("Escape")
    wait_until(lambda: pixels(desk, below) == looks[-1], 2)
    open_and_close(desk, panel)  # left clicks are not the menu's

    panel.hands.click(*where, button=3)

    def chooses():
        """The menu's first item is its last, too, so that both keys lead to it."""
        panel.hands.type("Up", "Return")
        return program.child.poll() is not None
    assert wait_until(chooses)
    assert program.ends() == 0
    assert program.count("App terminating - restoring gamma") == 1
    assert desk.is_untouched()


def test_a_tray_that_comes_late_or_comes_back_gets_the_item(desk, panel, host):
    program = desk.start_dimmed()
    for _ in range(3):
        host.start()
        open_and_close(desk, panel)
        beside = FIRST_DISPLAY[2] - 2 * TrayHost.BAR, 0, TrayHost.BAR, TrayHost.BAR
        assert not middle_of(desk, beside, RED), "there are two items"
        host.kill()
        assert wait_until(lambda: not place(desk, RED))
    desk.command(program, "noctra://show")
    assert panel.opens()
    assert desk.ends_cleanly(program)


def test_item_and_commands_come_back_with_the_session_bus(desk, panel, host):
    host.start()
    program = desk.start_dimmed()
    item(desk, RED)
    for times in 1, 2:
        desk.bus.kill()
        assert program.says("unavailable: the session bus went away", times)
        assert desk.is_dimmed()
        desk.bus.start()
        assert program.says("Automation commands from other programs available again", times)
        for url in "noctra://off", "noctra://on":
            assert desk.launch(url).ends() == 0
        assert desk.is_dimmed()
        if host.kind == "notifier":
            host.kill()  # where it has not gone with its bus
            host.start()
        panel.hands.click(*item(desk, RED))
        assert wait_until(panel.hands.windows)  # what assistive technology is told went with the bus
        panel.dismiss()
    assert program.count("Tray: ") == 1
    assert desk.ends_cleanly(program)


@pytest.mark.parametrize("bar, template", [(0x101010, WHITE), (0xF2F2F2, BLACK), (0x303080, WHITE)])
def test_the_items_colour_suits_the_bar(desk, panel, bar, template):
    TrayHost(desk, "embedded", bar).start()
    program = desk.start()
    item(desk, template)
    desk.command(program, "noctra://on")
    item(desk, RED)
    assert desk.ends_cleanly(program)


def test_a_click_in_a_tray_of_the_x_server_is_one_when_the_button_comes_up_on_the_item(desk, panel):
    TrayHost(desk, "embedded").start()
    program = desk.start_dimmed()
    where = item(desk, RED)
    panel.hands.do("mousemove", *where, "mousedown", 1)
    desk.command(program, "noctra://on")  # what the press does is done by now
    assert not panel.hands.windows()
    panel.hands.do("mousemove", *ELSEWHERE, "mouseup", 1)
    desk.command(program, "noctra://on")
    assert not panel.hands.windows(), "whoever slides off has thought better of it"
    open_and_close(desk, panel)

    panel.hands.click(*where, button=3)
    assert wait_until(lambda: panel.hands.type("ctrl+q") or program.child.poll() is not None)
    assert program.ends() == 0 and desk.is_untouched()


def test_gnomes_shell_which_keeps_left_clicks_for_the_menu_is_offered_the_panel_there(desk, panel):
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
    # A bar without a window of its own leaves windows less room.
    server = desk.server
    size = server.root.get_geometry()
    server.root.change_property(server.atom("_NET_WORKAREA"), Xatom.CARDINAL, 32,
                                [0, 27, size.width, size.height - 27])
    server.connection.sync()
    desk.command(program, "noctra://show")
    assert panel.opens() == [(478, 27, 322, 542)]
    server.root.delete_property(server.atom("_NET_WORKAREA"))
    call("/StatusNotifierItem", kde, "SecondaryActivate", "ii", 0, 0)
    assert panel.goes()
    assert desk.ends_cleanly(program)


def test_the_items_colour_is_looked_at_anew_when_the_desktops_settings_change(desk, panel):
    server = desk.server
    bar = server.root.create_window(0, 0, 800, 28, 0, 24, background_pixel=0x202020, override_redirect=1)
    bar.change_property(server.atom("_NET_WM_WINDOW_TYPE"), Xatom.ATOM, 32, [server.atom("_NET_WM_WINDOW_TYPE_DOCK")])
    bar.map()
    server.connection.sync()
    settings = panel.settings_manager(b"Gtk/EnableAnimations", 1)
    host = desk.run("/usr/bin/python3", "-B", "-c", GNOME_SHELL, BENCH)
    assert wait_until(lambda: desk.bus.has("org.gnome.Shell"))
    program = desk.start()
    assert host.says("item")

    def has(colour):
        pictures = desk.bus.client().call_blocking(
            host.lines[0].split()[1], "/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get", "ss",
            ("org.kde.StatusNotifierItem", "IconPixmap"))
        data = bytes(pictures[0][2])  # ARGB
        return any(data[i:i + 4] == b"\xff" + 3 * colour for i in range(0, len(data), 4))
    assert wait_until(lambda: has(b"\xff"))
    time.sleep(2.5)  # until the last look at what has only just come
    bar.change_attributes(background_pixel=0xF2F2F2)
    bar.clear_area()
    owner = server.connection.get_selection_owner(server.atom("_XSETTINGS_S0"))
    owner.change_property(*[server.atom("_XSETTINGS_SETTINGS")] * 2, 8, b"")
    server.connection.sync()
    assert wait_until(lambda: has(b"\0"), 10)
    bar.destroy()
    settings.close()
    assert desk.ends_cleanly(program)
