"""Where a display's calibration comes from: colord's profile, else a property, else what it carries."""

import struct
import time

import dbus
import pytest
from Xlib import Xatom

from curve import calibration
from desk import PATIENCE, wait_until

COLORD = "org.freedesktop.ColorManager"
MOCK = "org.freedesktop.DBus.Mock"
TABLES = [calibration(256, number) for number in (5, 6)]


def profile(tables=None):
    """An ICC profile with these tables for the graphics card, or with none."""
    tag = b""
    if tables:
        tag = struct.pack(">4sIIHHH", b"vcgt", 0, 0, 3, 256, 2) + b"".join(
            struct.pack(">256H", *levels) for levels in tables)
    entries = struct.pack(">I4sII", 1, b"vcgt", 144, len(tag)) if tag else struct.pack(">I12x", 0)
    head = struct.pack(">II4s4s4s12s4s", 144 + len(tag), 0, bytes([2, 0x10, 0, 0]), b"mntr", b"RGB ",
                       b"XYZ ", b"").ljust(36, b"\0") + b"acsp"
    return head.ljust(128, b"\0") + entries + tag


def set_profile(desk, name, contents):
    desk.server.root.change_property(desk.server.atom(name), Xatom.CARDINAL, 8, contents)
    desk.server.connection.sync()


class Colord:
    """A mock on the desk's system bus. Each display has the profile in FOLDER/(its name).icc."""

    def __init__(self, desk):
        self.bus = desk.system_bus
        self.bus.start()
        self.process = desk.run("/usr/bin/python3", "-m", "dbusmock", "--system", COLORD,
                                "/org/freedesktop/ColorManager", COLORD)
        assert wait_until(lambda: self.bus.has(COLORD))
        self.client = self.bus.client()
        for name in "DUMMY0", "DUMMY1":
            self.add(f"/profile/{name}", COLORD + ".Profile", Filename=str(desk.folder / f"{name}.icc"))
            self.add(f"/device/{name}", COLORD + ".Device", Enabled=True)
            self.mock(f"/device/{name}", "AddProperty", "ssv", COLORD + ".Device", "Profiles",
                      dbus_paths(f"/profile/{name}"))
        self.answer("if args[1] not in ('DUMMY0', 'DUMMY1'):\n"
                    "    raise dbus.exceptions.DBusException('no device', name='x.y.NotFound')\n"
                    "ret = dbus.ObjectPath('/device/' + args[1])")

    def mock(self, path, method, signature, *arguments):
        self.client.call_blocking(COLORD, path, MOCK, method, signature, arguments)

    def add(self, path, interface, **properties):
        self.mock("/org/freedesktop/ColorManager", "AddObject", "ssa{sv}a(ssss)", path, interface, properties, [])

    def answer(self, code):
        self.mock("/org/freedesktop/ColorManager", "AddMethod", "sssss", COLORD, "FindDeviceByProperty", "ss",
                  "o", code)


def dbus_paths(*paths):
    return dbus.Array([dbus.ObjectPath(path) for path in paths], signature="o", variant_level=1)


def expect_tables(desk, program, expected, sources):
    """What the first displays have been given, and that the filter goes on top of that and off again."""
    before = desk.before
    desk.before = [*expected, *before[len(expected):]]
    assert desk.becomes_untouched()
    for number, source in enumerate(sources):
        assert any(f"(DUMMY{number}): calibration {source}" in line for line in program.messages())
    desk.command(program, "noctra://on")
    assert desk.is_dimmed()
    assert desk.ends_cleanly(program)


def test_the_property_of_its_monitor_comes_before_what_a_display_carries(desk):
    desk.xrandr("--output", "DUMMY0", "--primary")
    set_profile(desk, "_ICC_PROFILE", profile(TABLES[0]))
    set_profile(desk, "_ICC_PROFILE_1", profile(TABLES[1]))
    set_profile(desk, "_ICC_PROFILE_2", profile())
    expect_tables(desk, desk.start(), TABLES, ["_ICC_PROFILE", "_ICC_PROFILE", "as found"])


def test_colords_profile_comes_before_the_property(desk):
    Colord(desk)
    (desk.folder / "DUMMY0.icc").write_bytes(profile(TABLES[0]))
    (desk.folder / "DUMMY1.icc").write_bytes(profile())  # says nothing of tables
    desk.xrandr("--output", "DUMMY0", "--primary")
    set_profile(desk, "_ICC_PROFILE", profile(TABLES[1]))
    set_profile(desk, "_ICC_PROFILE_1", profile(TABLES[1]))
    expect_tables(desk, desk.start(), TABLES,
                  [f"colord: {desk.folder}/DUMMY0.icc", "_ICC_PROFILE", "as found"])


@pytest.mark.parametrize("answer", ["ret = dbus.ObjectPath('/nowhere')", "import time; time.sleep(60)"])
def test_a_colord_that_errs_or_hangs_costs_the_profiles_only(desk, answer):
    Colord(desk).answer(answer)
    (desk.folder / "DUMMY0.icc").write_bytes(profile(TABLES[0]))
    began = time.monotonic()
    program = desk.start()
    assert time.monotonic() - began < PATIENCE / 4
    expect_tables(desk, program, [], ["as found"] * 3)


def test_a_profile_that_rounds_otherwise_leaves_the_tables_alone(desk):
    desk.xrandr("--output", "DUMMY0", "--primary")
    set_profile(desk, "_ICC_PROFILE", profile([[min(level + 200, 65535) for level in levels]
                                               for levels in desk.before[0]]))
    expect_tables(desk, desk.start(), [], ["_ICC_PROFILE"])
