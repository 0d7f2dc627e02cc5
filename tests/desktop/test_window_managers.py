"""The panel's window under window managers that have several workspaces and hide windows."""

import glob
import signal
import time

import pytest
from Xlib import X
from Xlib.protocol.event import ClientMessage

from desk import wait_until
from panel import TITLE, Hands

ALL_WORKSPACES = 0xFFFFFFFF
WORKSPACES = 5  # nobody's default


class WindowManager:
    def __init__(self, desk, *command):
        self.desk, self.server = desk, desk.server
        self.root, self.atom = desk.server.root, desk.server.atom
        self.root.delete_property(self.atom("_NET_SUPPORTING_WM_CHECK"))  # an earlier one's
        for settings in glob.glob("/usr/lib/*/xfce4/xfconf/xfconfd"):
            desk.run(settings)
        assert wait_until(lambda: desk.bus.has("org.xfce.Xfconf"))
        desk.run(*command)
        assert wait_until(lambda: self.root.get_full_property(self.atom("_NET_SUPPORTING_WM_CHECK"), 0))
        # Until it has come up what it is asked, windows included, may be lost on it.
        assert wait_until(lambda: self.ask("_NET_NUMBER_OF_DESKTOPS", WORKSPACES) or
                          self.number(self.root, "_NET_NUMBER_OF_DESKTOPS") == WORKSPACES)

    def ask(self, what, *values, window=None):
        """As a pager does."""
        data = (32, [*values, *[0] * (5 - len(values))])
        self.root.send_event(ClientMessage(window=window or self.root, client_type=self.atom(what), data=data),
                             event_mask=X.SubstructureRedirectMask | X.SubstructureNotifyMask)
        self.server.connection.sync()

    def number(self, window, name):
        found = window.get_full_property(self.atom(name), 0)
        return found and found.value[0]

    def go_to(self, workspace):
        self.ask("_NET_CURRENT_DESKTOP", workspace)
        assert wait_until(lambda: self.number(self.root, "_NET_CURRENT_DESKTOP") == workspace)

    def show_desktop(self, shown):
        self.ask("_NET_SHOWING_DESKTOP", shown)
        assert wait_until(lambda: self.number(self.root, "_NET_SHOWING_DESKTOP") == shown)

    def panel(self):
        clients = self.root.get_full_property(self.atom("_NET_CLIENT_LIST"), 0).value
        windows = [self.server.connection.create_resource_object("window", id) for id in clients]
        return next(window for window in windows if window.get_wm_name() == TITLE)


@pytest.mark.parametrize("command", [("xfwm4", "--compositor=off"), ("openbox",)], ids=lambda c: c[0])
def test_the_panel_comes_before_the_persons_eyes_wherever_it_was(desk, command):
    hands = Hands(desk)
    manager = WindowManager(desk, *command)

    def comes(program):
        desk.command(program, "noctra://show")
        came = wait_until(hands.windows)
        time.sleep(0.5)  # so long it counts as shown even where a window manager has not shown it yet
        return came

    program = desk.start()
    assert comes(program)
    assert wait_until(lambda: manager.number(manager.panel(), "_NET_WM_DESKTOP") == ALL_WORKSPACES)
    manager.go_to(2)
    assert hands.windows()
    manager.ask("WM_CHANGE_STATE", 3, window=manager.panel())
    assert wait_until(lambda: not hands.windows()), "it is not iconified"
    assert comes(program)
    manager.show_desktop(1)
    assert comes(program)
    program.ends(signal.SIGTERM)

    manager.show_desktop(0)
    manager.show_desktop(1)
    program = desk.start()
    assert comes(program), "for the first time, while the desktop is shown"
    assert desk.ends_cleanly(program)
