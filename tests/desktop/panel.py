"""The panel as a person works it: the mouse and the keyboard by xdotool, and what assistive technology is
told of it, which is also where the tests learn what is where."""

import struct
import subprocess

import dbus.bus
from Xlib import X, display, error
from Xlib.protocol import event

from desk import PATIENCE, wait_until

TITLE = "NOCTRA"
FIRST_DISPLAY = (0, 0, 800, 600)  # x, y, width, height: the panel has room on it
ELSEWHERE = (100, 500)
GEAR, WARMTH, BRIGHTNESS, PWM_SAFE, POWER = (
    "Settings", "WARMTH", "BRIGHTNESS", "PWM-SAFE MODE", "Noctra filter")
SHEET, CLOSE, COPY, STOP = "SETTINGS", "CLOSE", "COPY DIAGNOSTICS", "EMERGENCY STOP (QUIT)"
LAUNCH_AT_LOGIN, ALLOW_EXTREME_DIM = "LAUNCH AT LOGIN", "ALLOW EXTREME DIM"
STATES = {"active": 1, "checked": 4, "focusable": 11, "focused": 12, "showing": 25}


def at(box, across, down):
    """A place in a box (x, y, width, height), in shares of its size."""
    x, y, width, height = box
    return x + int(across * (width - 1)), y + int(down * (height - 1))


class Hands:
    """What is done has reached the server when a call returns, not the program."""

    def __init__(self, desk):
        self.server, self.environment = desk.server, {"DISPLAY": desk.server.display}

    def do(self, *words):
        subprocess.run(["/usr/bin/xdotool", *(str(word) for word in words)], env=self.environment,
                       check=True, capture_output=True, timeout=PATIENCE)

    def move(self, x, y):
        self.do("mousemove", x, y)

    def click(self, x, y, button=1):
        self.do("mousemove", x, y, "click", "--delay", 0, button)

    def drag(self, start, end, steps=20):
        way = [word for step in range(1, steps + 1)
               for word in ("mousemove", *(a + (b - a) * step // steps for a, b in zip(start, end)))]
        self.do("mousemove", *start, "mousedown", 1, *way, "mouseup", 1)

    def type(self, *keys):
        self.do("key", *keys)

    def shown(self, title=TITLE):
        """The windows with that title that are on the screen, also those in a window manager's frames."""
        found, above = [], [self.server.root]
        while above:
            try:
                children = above.pop().query_tree().children
            except error.BadWindow:
                continue  # it has just gone
            for window in children:
                try:
                    if window.get_attributes().map_state == X.IsViewable:
                        above.append(window)
                        if window.get_wm_name() == title:
                            found.append(window)
                except error.BadWindow:
                    pass
        return found

    def windows(self, title=TITLE):
        """Their boxes."""
        boxes = []
        for window in self.shown(title):
            try:
                size, corner = window.get_geometry(), window.translate_coords(self.server.root, 0, 0)
                boxes.append((-corner.x, -corner.y, size.width, size.height))
            except (error.BadDrawable, error.BadWindow):
                pass
        return boxes

    def ask_to_close(self, title=TITLE):
        """As a window manager's close button does."""
        (window,) = self.shown(title)
        window.send_event(event.ClientMessage(window=window, client_type=self.server.atom("WM_PROTOCOLS"), data=(
            32, [self.server.atom("WM_DELETE_WINDOW"), X.CurrentTime, 0, 0, 0])))
        self.server.connection.sync()


class Accessible:
    """One thing of a program as assistive technology is told of it, asked anew each time; raises
    dbus.DBusException where the program no longer has it."""

    def __init__(self, bus, service, path):
        self.bus, self.service, self.path = bus, service, path

    def call(self, interface, method, signature="", *arguments):
        return self.bus.call_blocking(self.service, self.path, interface, method, signature, arguments,
                                      timeout=PATIENCE)

    def get(self, name, interface="org.a11y.atspi.Accessible"):
        return self.call("org.freedesktop.DBus.Properties", "Get", "ss", interface, name)

    @property
    def name(self):
        return str(self.get("Name"))

    @property
    def description(self):
        return str(self.get("Description"))

    @property
    def role(self):
        return str(self.call("org.a11y.atspi.Accessible", "GetRoleName"))

    def is_(self, state):
        words = self.call("org.a11y.atspi.Accessible", "GetState")
        return bool(words[STATES[state] // 32] >> STATES[state] % 32 & 1)

    @property
    def box(self):
        return tuple(int(n) for n in self.call("org.a11y.atspi.Component", "GetExtents", "u", 0))

    def value(self, which="CurrentValue"):
        return float(self.get(which, "org.a11y.atspi.Value"))

    def set_value(self, value):
        self.call("org.freedesktop.DBus.Properties", "Set", "ssv", "org.a11y.atspi.Value", "CurrentValue",
                  dbus.Double(value, variant_level=1))

    def perform(self, action):
        actions = [str(name) for name, *_ in self.call("org.a11y.atspi.Action", "GetActions")]
        self.call("org.a11y.atspi.Action", "DoAction", "i", actions.index(action))

    def all(self):
        """This and what is in it, a parent before its children; what goes meanwhile is left out."""
        yield self
        try:
            for service, path in self.call("org.a11y.atspi.Accessible", "GetChildren"):
                yield from Accessible(self.bus, service, path).all()
        except dbus.DBusException:
            return


class Panel:
    """Made before the program is started."""

    def __init__(self, desk):
        self.desk, self.hands = desk, Hands(desk)
        desk.xrandr("--output", "DUMMY0", "--mode", "800x600")
        # Without a display: the address must not be left behind on an X server that other tests use.
        self.launcher = desk.run("/usr/libexec/at-spi-bus-launcher", "--launch-immediately",
                                 environment={"DISPLAY": None, "GSETTINGS_BACKEND": "memory"})
        assert wait_until(lambda: desk.bus.has("org.a11y.Bus"))
        address = desk.bus.client().call_blocking("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus",
                                                  "GetAddress", "", ())
        self.root = Accessible(dbus.bus.BusConnection(str(address)), "org.a11y.atspi.Registry",
                               "/org/a11y/atspi/accessible/root")
        desk.environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        self.hands.do("mouseup", 1)
        self.hands.move(*at(FIRST_DISPLAY, 1, 1))

    def find(self, name, holds=lambda one: True):
        """The control of that name for which the condition holds, if there is one now."""
        for one in self.root.all():
            try:
                if one.name == name and one.role != "application" and holds(one):
                    return one
            except dbus.DBusException:
                pass
        return None

    def becomes(self, name, holds):
        return wait_until(lambda: self.find(name, holds))

    def reads(self, name, description):
        return self.becomes(name, lambda one: one.description == description)

    def control(self, name):
        found = wait_until(lambda: self.find(name))
        assert found, f"the panel has no {name}"
        return found

    def show(self, program):
        """Comes back when the panel can be worked with."""
        self.desk.command(program, "noctra://show")
        assert self.becomes(TITLE, lambda one: one.role == "frame" and one.is_("active"))
        self.control(POWER)

    def start(self, **options):
        program = self.desk.start(**options)
        self.show(program)
        return program

    def opens(self):
        """Its boxes, once all that showing it entails is done: the program answers after that only."""
        return wait_until(lambda: self.find(TITLE, lambda one: one.role == "frame") and self.hands.windows())

    def dismiss(self):
        """By presses elsewhere. One that comes with another on the panel belongs to that one."""
        def is_gone():
            left = min((box[0] for box in self.hands.windows()), default=FIRST_DISPLAY[2])
            self.hands.click(*(ELSEWHERE if left > ELSEWHERE[0] else at(FIRST_DISPLAY, 0.9, 0.8)))
            return wait_until(lambda: not self.hands.windows(), 0.3)
        assert wait_until(is_gone), "a press elsewhere does not close the panel"

    def goes(self):
        return wait_until(lambda: not self.hands.windows()
                          and not self.find(TITLE, lambda one: one.role == "frame"))

    def settings_manager(self, name, value):
        """Tells programs one of the desktop's settings over XSETTINGS until it is closed."""
        connection = display.Display(self.desk.server.display)
        window = connection.screen().root.create_window(-1, -1, 1, 1, 0, 0, X.InputOnly)
        setting = struct.pack("<BBH", 0, 0, len(name)) + name + b"\0" * (-len(name) % 4)
        atom = connection.intern_atom("_XSETTINGS_SETTINGS")
        window.change_property(atom, atom, 8, struct.pack("<BxxxII", 0, 1, 1) + setting
                               + struct.pack("<Ii", 1, value))
        window.set_selection_owner(connection.intern_atom("_XSETTINGS_S0"), X.CurrentTime)
        connection.sync()
        return connection

    def place(self, name):
        """Where the control is, once it is shown and has come to rest."""
        boxes = []

        def rests():
            shown = self.find(name, lambda one: one.is_("showing"))
            boxes.append(shown and shown.box)
            return shown and boxes[-2:] == [boxes[-1]] * 2
        assert wait_until(rests), f"the panel does not show {name}"
        return boxes[-1]

    def click(self, name):
        self.hands.click(*at(self.place(name), 0.5, 0.5))

    def drag(self, fader, up):
        """From one end of the fader beyond the other."""
        box = self.place(fader)
        self.hands.drag(at(box, 0.5, up), at(box, 0.5, not up))

    def cursor(self):
        """A number for the pointer's looks."""
        self.desk.server.connection.xfixes_query_version()
        return self.desk.server.connection.xfixes_get_cursor_image(self.desk.server.root).cursor_serial

    def count_pixels(self, box, colour):
        return pixels(self.desk, box).count(colour)

    def open_settings(self):
        self.click(GEAR)
        x, y, width, height = self.control(TITLE).box  # with the window's edge
        whole = x + 1, y + 1, width - 2, height - 2
        assert self.becomes(SHEET, lambda one: one.box == whole), "the settings did not open"

    def close_settings(self):
        self.click(CLOSE)
        assert wait_until(lambda: not self.find(SHEET)), "the settings did not close"


def pixels(desk, box):
    """What is on the screen there, as 0xRRGGBB, row by row."""
    data = desk.server.root.get_image(*box, X.ZPixmap, 0xFFFFFF).data
    return [data[i] | data[i + 1] << 8 | data[i + 2] << 16 for i in range(0, len(data), 4)]


def middle_of(desk, box, colour, least=20):
    """Where that colour is, if there are so many pixels of it."""
    places = [divmod(i, box[2]) for i, pixel in enumerate(pixels(desk, box)) if pixel == colour]
    if len(places) < least:
        return None
    return (box[0] + sum(x for _, x in places) // len(places),
            box[1] + sum(y for y, _ in places) // len(places))
