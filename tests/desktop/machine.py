"""What else a machine has: logind, a backlight, monitors that can be set, trays."""

import os
import pathlib
import subprocess

import dbus
import pytest

from desk import BUILD, wait_until

LOGIND, MANAGER, SESSION = (
    "org.freedesktop.login1", "/org/freedesktop/login1", "/org/freedesktop/login1/session/auto")


def over(folder, where):
    """What to start a program under for it to see the folder in the place of `where`; needs root."""
    # The mount point above it must not hand on what is mounted below to the machine's own.
    above = "/" + str(where).split("/")[1]
    under = ["unshare", "-m", "--propagation", "unchanged", "sh", "-c",
             f"mount --make-rprivate {above} && mount --bind '{folder}' {where} && exec \"$@\"", "sh"]
    if subprocess.run([*under, "true"], capture_output=True).returncode != 0:
        pytest.skip("no mount namespace can be made here (root is needed)")
    return under


class Backlight:
    """Stands in for /sys/class: desk.start(under=backlight.under). Levels are of 1000."""

    def __init__(self, desk, value=400):
        desk.server.set_property(0, "ConnectorType", "Panel")
        self.folder = desk.folder / "sys"
        self.device = self.folder / "backlight/test_backlight"
        self.device.mkdir(parents=True)
        (self.device / "type").write_text("firmware\n")
        (self.device / "max_brightness").write_text("1000\n")
        (self.device / "brightness").write_text(f"{value}\n")
        (self.device / "actual_brightness").symlink_to("brightness")
        self.under = over(self.folder, "/sys/class")

    @property
    def value(self):
        return int((self.device / "brightness").read_text() or -1)  # empty while others write it

    def set(self, value):
        """In the file that programs may hold open, which is never empty: the kernel's are not, either."""
        with open(self.device / "brightness", "r+") as file:
            file.write(f"{value}\n")
            file.truncate()

    def stick_at(self, value):
        """Whatever is written, the panel stays like this."""
        (self.device / "actual_brightness").unlink()
        (self.device / "actual_brightness").write_text(f"{value}\n")

    def becomes(self, value):
        return wait_until(lambda: self.value == value)


class Monitors:
    """Monitors on a stand-in for libddcutil (standin/ddcutil.cpp): on the outputs 0 to count - 1. Start the
    program with **monitors.options. Each has a folder of small files; set(0, "write-ms", 200)
    and the like as the stand-in's head says, also while the program runs."""

    def __init__(self, desk, count, value=40):
        self.folder = desk.folder / "monitors"
        devices = desk.folder / "dev"
        devices.mkdir()
        for device in ("null", "i2c-99"):
            (devices / device).touch()
        self.options = {
            "environment": {"LD_LIBRARY_PATH": str(BUILD / "tests/desktop/standin"),
                            "NOCTRA_TEST_MONITORS": str(self.folder)},
            "under": over(devices, "/dev")}
        for number in range(count):
            (self.folder / str(number)).mkdir(parents=True)
            edid = b"\0" + b"\xff" * 6 + b"\0" + bytes(119) + bytes([number])
            (self.folder / str(number) / "edid").write_bytes(edid)
            self.set(number, "value", value)
            desk.server.set_property(number, "EDID", edid)

    def set(self, number, name, value):
        """None takes the file away."""
        file = self.folder / str(number) / name
        if value is None:
            file.unlink(missing_ok=True)
        else:
            new = file.with_suffix(".new")
            new.write_text(f"{value}\n")
            new.rename(file)

    def value(self, number):
        return int((self.folder / str(number) / "value").read_text())

    def becomes(self, number, value):
        return wait_until(lambda: self.value(number) == value)

    def commands(self):
        """All that was asked of the monitors so far, e.g. "read 0", "write 0 100", "redetect"."""
        log = self.folder / "log"
        return log.read_text().splitlines() if log.exists() else []


class Logind:
    """On the desk's system bus, which starts with it. Writes of brightness are noted and nothing else."""

    def __init__(self, desk, start_bus=True):
        self.bus = desk.system_bus
        if start_bus:
            self.bus.start()
        self.process = desk.run("/usr/bin/python3", "-m", "dbusmock", "--system", "--template", "logind")
        assert wait_until(lambda: self.bus.has(LOGIND)), "the mock of logind did not come up"
        self.client = self.bus.client()
        self.mock(MANAGER, "AddSession", "ssusb", "auto", "seat0", os.getuid(), "tester", True)
        self.answer_brightness("")

    def mock(self, path, method, signature="", *arguments):
        return self.client.call_blocking(LOGIND, path, "org.freedesktop.DBus.Mock", method, signature, arguments)

    def answer_brightness(self, code):
        """Python that is run for each SetBrightness, with its subsystem, name and level in args[0:3]."""
        self.mock(SESSION, "AddMethod", "sssss", "org.freedesktop.login1.Session", "SetBrightness", "ssu", "",
                  code)

    def obey(self, backlight):
        # The file is never empty in between: the mock may be killed then.
        self.answer_brightness(f"with open('{backlight.device}/brightness', 'r+') as file:\n"
                               "    file.write(str(args[2]) + chr(10)); file.truncate()")

    def brightness_calls(self):
        return [(str(subsystem), str(name), int(level)) for _, (subsystem, name, level)
                in self.mock(SESSION, "GetMethodCalls", "s", "SetBrightness")]

    def prepare_for_sleep(self, asleep):
        self.mock(MANAGER, "EmitSignal", "sssav", "org.freedesktop.login1.Manager", "PrepareForSleep", "b",
                  [dbus.Boolean(asleep, variant_level=1)])

    def is_listened_to(self):
        rules = self.client.call_blocking("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                          "org.freedesktop.DBus.Debug.Stats", "GetAllMatchRules", "", ())
        # The program asks once to see the bus's answer, and QtDBus asks once more.
        return any(sum("PrepareForSleep" in rule for rule in of_client) >= 2 for of_client in rules.values())

    def sleep_and_wake(self):
        assert wait_until(self.is_listened_to)
        self.prepare_for_sleep(True)
        self.prepare_for_sleep(False)


XFCE_PANEL = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array"><value type="int" value="1"/>
    <property name="dark-mode" type="bool" value="true"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="28"/>
      <property name="plugin-ids" type="array">
        <value type="int" value="1"/><value type="int" value="2"/>
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="separator">
      <property name="expand" type="bool" value="true"/>
      <property name="style" type="uint" value="0"/>
    </property>
    <property name="plugin-2" type="string" value="systray"/>
  </property>
</channel>
"""


class TrayHost:
    """A bar at the top of the first display, its tray at the right end; comes with start(). Kinds: "notifier"
    is xfce4-panel with openbox, for StatusNotifierItems; "embedded" is trayer without a window manager."""

    ACTIVE, WHITE, BLACK = 0xFF453B, 0xFFFFFF, 0x000000  # what the item is drawn in
    BAR = 28  # its height, and the side of the square that holds the item

    def __init__(self, desk, kind, colour=0x202020):
        self.desk, self.kind, self.colour = desk, kind, colour
        self.bar = self.settings = None
        if kind == "notifier":
            folder = desk.folder / "config/xfce4/xfconf/xfce-perchannel-xml"
            folder.mkdir(parents=True)
            (folder / "xfce4-panel.xml").write_text(XFCE_PANEL)
            self.window_manager = desk.run("/usr/bin/openbox")

    def start(self):
        """Also after kill(), and on a session bus that was started again."""
        if self.kind == "embedded":
            self.bar = self.desk.run(
                "/usr/bin/trayer", "--edge", "top", "--align", "right", "--widthtype", "request", "--height",
                self.BAR - 2, "--transparent", "true", "--alpha", 0, "--tint", hex(self.colour))
            return
        if self.settings:
            self.settings.kill()  # it ends with its bus, sooner or later
        daemon = next(pathlib.Path("/usr/lib").glob("*/xfce4/xfconf/xfconfd"))
        self.settings = self.desk.run(daemon)
        self.bar = self.desk.run("/usr/bin/xfce4-panel", "--disable-wm-check")

    def kill(self):
        self.bar.kill()
