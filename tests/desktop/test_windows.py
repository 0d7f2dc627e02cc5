"""What the program learns of other programs' windows: presses that close the panel, bars that it leaves free."""

import pytest
from Xlib import X, Xatom, display

from desk import wait_until
from panel import ELSEWHERE, FIRST_DISPLAY, at


@pytest.fixture
def other(desk):
    """A connection as another program has one."""
    connection = display.Display(desk.server.display)
    yield connection
    connection.close()


def show_window(other, x, y, width, height, parent=None, **properties):
    window = (parent or other.screen().root).create_window(
        x, y, width, height, 0, 0, background_pixel=0x202020, override_redirect=True)
    for name, (kind, values) in properties.items():
        window.change_property(other.intern_atom(name), kind, 32, values)
    window.map()
    other.sync()
    return window


@pytest.mark.parametrize("press, closes", [
    ("left", True), ("right", True), ("on the second display", True), ("while another grabs the mouse", True),
    ("middle", False), ("wheel", False), ("on the panel", False)])
def test_presses_elsewhere_close_the_panel(desk, panel, other, press, closes):
    panel.start()
    buttons = {"right": 3, "middle": 2, "wheel": 4}
    where = {"on the second display": (1000, 9), "on the panel": at(panel.opens()[0], 0.5, 0.65)}
    if press == "while another grabs the mouse":
        other.screen().root.grab_pointer(0, 0, X.GrabModeAsync, X.GrabModeAsync, 0, 0, X.CurrentTime)
        other.sync()
    panel.hands.click(*where.get(press, ELSEWHERE), button=buttons.get(press, 1))
    if closes:
        assert panel.goes()
    else:
        assert not wait_until(lambda: not panel.hands.windows(), 0.4)


def dock(other, **struts):
    return {"_NET_WM_WINDOW_TYPE": (Xatom.ATOM, [other.intern_atom("_NET_WM_WINDOW_TYPE_DOCK")]),
            **{name: (Xatom.CARDINAL, values) for name, values in struts.items()}}


@pytest.mark.parametrize("bar, top", [
    ("a bar above", 40), ("a bar in a window manager's frame", 40), ("an old bar's strut", 40),
    ("a bar of another display", 0), ("a strut that makes no sense", 0)])
def test_the_panel_leaves_bars_free(desk, panel, other, bar, top):
    whole = [0, 0, 40, 0, 0, 0, 0, 0, 0, 799, 0, 0]
    if bar == "an old bar's strut":
        show_window(other, 0, 0, 800, 40, **dock(other, _NET_WM_STRUT=[0, 0, 40, 0]))
    elif bar == "a bar in a window manager's frame":
        frame = show_window(other, 0, 0, 800, 40)
        show_window(other, 0, 0, 800, 40, frame, **dock(other, _NET_WM_STRUT_PARTIAL=whole))
    elif bar == "a bar of another display":
        show_window(other, 800, 0, 640, 40, **dock(
            other, _NET_WM_STRUT_PARTIAL=[0, 0, 40, 0, 0, 0, 0, 0, 800, 1439, 0, 0]))
    elif bar == "a strut that makes no sense":
        show_window(other, 0, 0, 800, 40, **dock(other, _NET_WM_STRUT_PARTIAL=[0, 0, 0xFFFFFFFF]))
    else:
        show_window(other, 0, 0, 800, 40, **dock(other, _NET_WM_STRUT_PARTIAL=whole))
    program = desk.start()
    desk.command(program, "noctra://show")
    ((x, y, width, height),) = panel.opens()
    assert (x + width, y) == (FIRST_DISPLAY[2], top)
    assert desk.ends_cleanly(program)
