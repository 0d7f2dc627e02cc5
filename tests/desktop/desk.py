"""A desk of its own for each test: home folders, a session bus, the program and its log, on the X server
of the whole run. Everything that is started here goes with the desk.

    def test_something(desk):
        program = desk.start()                 # or start(["noctra://on"], environment={...}, under=[...])
        desk.command(program, "noctra://on")   # comes back once it is applied
        assert desk.becomes_dimmed()
        assert program.ends(signal.SIGTERM) == 0 and desk.is_untouched()

Questions that may take a moment are asked with wait_until, which gives up after PATIENCE.
"""

import ctypes
import os
import pathlib
import re
import shutil
import signal
import subprocess
import tempfile
import threading
import time

import dbus.bus
import dbus.lowlevel

from curve import filtered

BUILD = pathlib.Path(os.environ.get("NOCTRA_BUILD", pathlib.Path(__file__).parents[2] / "build/debug"))
SANITIZED = bool(os.environ.get("NOCTRA_SANITIZE"))
PATIENCE = 60 if SANITIZED else 20
DISPLAYS = 3
WARMTH, BRIGHTNESS = 0.5, 0.6  # in the preferences of every new desk
NAME, PATH = "org.noctra.Noctra", "/org/noctra/Noctra"
RUNNING = "App launched successfully"  # the last line that the program logs while it starts
APPLIED = "Automation command applied: "
FOLDERS = {"HOME": "home", "XDG_CONFIG_HOME": "config", "XDG_CACHE_HOME": "cache",
           "XDG_DATA_HOME": "data", "XDG_STATE_HOME": "state", "XDG_RUNTIME_DIR": "runtime"}
BUS_CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><listen>{address}</listen><auth>EXTERNAL</auth><policy context="default">
<allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/></policy>
{rules}</busconfig>"""
libc = ctypes.CDLL(None)


def wait_until(question, patience=PATIENCE):
    """Asks again and again; the last answer, which is false where the time was not enough."""
    end = time.monotonic() + patience
    while not (answer := question()) and time.monotonic() < end:
        time.sleep(0.01)
    return answer


def die_with_parent():
    libc.prctl(1, signal.SIGKILL)


class Process:
    """A program and what it prints. `stdout` is a descriptor where its output is not to be read here."""

    def __init__(self, arguments, environment, stdout=subprocess.PIPE):
        self.printed = threading.Condition()
        self.lines, self.errors = [], []
        self.arguments = arguments
        self.child = subprocess.Popen(
            arguments, env=environment, stdin=subprocess.DEVNULL, stdout=stdout,
            stderr=subprocess.PIPE, preexec_fn=die_with_parent, start_new_session=True)
        self.readers = [threading.Thread(target=self.read, args=ends, daemon=True)
                        for ends in ((self.child.stdout, self.lines), (self.child.stderr, self.errors))
                        if ends[0]]
        for reader in self.readers:
            reader.start()

    def read(self, stream, lines):
        rest = b""
        while chunk := stream.read1(1 << 16):  # whole lines, many at once: the program drops what waits too long
            *whole, rest = (rest + chunk).split(b"\n")
            with self.printed:
                lines.extend(line.decode(errors="replace") for line in whole)
                self.printed.notify_all()
        if rest:
            lines.append(rest.decode(errors="replace"))

    def messages(self):
        """The log without its time stamps."""
        return [re.sub(r"^\[[0-9:.]+\] ", "", line) for line in self.lines]

    def count(self, text):
        return sum(text in line for line in list(self.lines))

    def says(self, text, times=1, patience=PATIENCE):
        """Whether that many lines with the text come, or have come."""
        with self.printed:
            return self.printed.wait_for(lambda: self.count(text) >= times, patience)

    def signal(self, number):
        self.child.send_signal(number)

    def ends(self, number=None, patience=PATIENCE):
        """The status with which it ends, after that signal; negative: ended by a signal; None: it runs on."""
        if number is not None:
            self.signal(number)
        try:
            status = self.child.wait(patience)
        except subprocess.TimeoutExpired:
            return None
        for reader in self.readers:
            reader.join(PATIENCE)
        return status

    def kill(self):
        return self.ends(signal.SIGKILL)

    def clear_away(self):
        """Also what it has started."""
        try:
            os.killpg(self.child.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        self.ends()


class Bus:
    """A message bus that can be killed and started again at its address."""

    def __init__(self, folder, name):
        self.address = f"unix:path={folder}/{name}"
        self.socket, self.configuration = folder / name, folder / (name + ".conf")
        self.daemon = self.channel = None  # the channel is for what many messages go through

    def start(self, rules="", environment=None):
        """The environment is for what the bus starts."""
        self.kill()
        self.configuration.write_text(BUS_CONFIGURATION.format(address=self.address, rules=rules))
        self.daemon = subprocess.Popen(
            ["dbus-daemon", "--nofork", "--nopidfile", "--nosyslog", "--print-address",
             f"--config-file={self.configuration}"], env=environment, stdout=subprocess.PIPE,
            preexec_fn=die_with_parent)
        assert self.daemon.stdout.readline(), "a message bus did not come up"

    def kill(self):
        if self.daemon:
            self.daemon.kill()
            self.daemon.wait()
            self.daemon.stdout.close()
            self.daemon = self.channel = None
            self.socket.unlink(missing_ok=True)

    def client(self):
        return dbus.bus.BusConnection(self.address)

    def has(self, name):
        return self.client().name_has_owner(name)


class Desk:
    def __init__(self, server):
        self.server = server
        self.before = server.reset(DISPLAYS)
        self.place = tempfile.TemporaryDirectory()
        self.folder = pathlib.Path(self.place.name)
        for name in FOLDERS.values():
            (self.folder / name).mkdir(mode=0o700)
        self.bus = Bus(self.folder, "session-bus")
        self.bus.start()
        self.system_bus = Bus(self.folder, "system-bus")  # starts where a test asks for it
        self.processes = []
        self.binary = pathlib.Path(os.environ.get("NOCTRA_BINARY", BUILD / "app/noctra"))
        self.preferences = self.folder / "config/noctra/noctra.conf"
        self.prefer(filterIntensity=WARMTH, filterBrightness=BRIGHTNESS)
        self.environment = {
            "PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "LANG": "C.UTF-8", "USER": "tester",
            "DISPLAY": server.display, "XDG_SESSION_TYPE": "x11",
            "DBUS_SESSION_BUS_ADDRESS": self.bus.address,
            "DBUS_SYSTEM_BUS_ADDRESS": self.system_bus.address,
            **{name: str(self.folder / folder) for name, folder in FOLDERS.items()},
            **{name: value for name, value in os.environ.items() if name.endswith("SAN_OPTIONS")}}

    def print_logs(self):
        for process in self.processes:
            print("$", *process.arguments)
            print(*process.lines, *process.errors, sep="\n")

    def close(self):
        self.server.resume()
        for process in reversed(self.processes):
            process.clear_away()
        self.bus.kill()
        self.system_bus.kill()
        self.place.cleanup()

    def prefer(self, **values):
        """Writes the preferences anew."""
        self.preferences.parent.mkdir(exist_ok=True)
        values = {"hasShownFirstRunPopover": "true", **values}
        self.preferences.write_text("[General]\n" + "".join(f"{k}={v}\n" for k, v in values.items()))

    def run(self, *arguments, environment={}, **options):
        """Another program on this desk; a variable that is None is taken out of the environment."""
        merged = {k: v for k, v in {**self.environment, **environment}.items() if v is not None}
        self.processes.append(Process([a if isinstance(a, bytes) else str(a) for a in arguments], merged, **options))
        return self.processes[-1]

    def take_away(self, library):
        """From now on the program is one that lacks a library of its own."""
        folder = self.folder / "programs"
        folder.mkdir()
        for entry in self.binary.parent.iterdir():
            if entry.name != library and (entry.suffix == ".so" or entry.is_dir()):
                (folder / entry.name).symlink_to(entry)
        # Not as a link: a program looks where its file really is.
        self.binary = pathlib.Path(shutil.copy2(self.binary, folder))

    def xrandr(self, *arguments):
        assert self.run("xrandr", *arguments).ends() == 0, arguments

    def launch(self, *arguments, under=(), **options):
        """The program, without waiting for anything. `under` is a command that runs the rest of its line."""
        return self.run(*under, self.binary, *arguments, **options)

    def start(self, *arguments, **options):
        program = self.launch(*arguments, **options)
        assert program.says(RUNNING), "the program did not start"
        return program

    def start_dimmed(self, **options):
        program = self.start(**options)
        self.command(program, "noctra://on")
        assert self.is_dimmed()
        return program

    def open(self, *urls, wait=True, method="Open"):
        """Hands the URLs to the running program; comes back once it has applied them, if it is to wait."""
        message = dbus.lowlevel.MethodCallMessage(NAME, PATH, "org.freedesktop.Application", method)
        if method == "Open":
            message.append(list(urls), {}, signature="asa{sv}")
        else:
            message.append({}, signature="a{sv}")
        self.bus.channel = self.bus.channel or self.bus.client()
        if wait:
            self.bus.channel.send_message_with_reply_and_block(message, PATIENCE)
        else:
            message.set_no_reply(True)
            self.bus.channel.send_message(message)
            self.bus.channel.flush()

    def command(self, program, url):
        applied = program.count(APPLIED)
        self.open(url)
        assert program.says(APPLIED, applied + 1), f"the program did not apply {url}"

    def difference(self, expected, tolerance):
        for crtc, (now, then) in enumerate(zip(self.server.tables(), expected)):
            for channel, a, b in zip("RGB", now, then):
                worst = max(range(len(a)), key=lambda k: abs(a[k] - b[k]))
                if abs(a[worst] - b[worst]) > tolerance:
                    return f"CRTC {crtc} has {a[worst]} in {channel}[{worst}], not {b[worst]}"
        return None

    def is_untouched(self):
        """Every CRTC carries to the last bit what it carried before the program came."""
        found = self.difference(self.before, 0)
        print(found or "untouched")
        return found is None

    def is_dimmed(self, warmth=WARMTH, brightness=BRIGHTNESS):
        """The lit CRTCs carry the filtered tables within one step, the dark ones what they carried."""
        lit = self.server.lit()
        found = self.difference([filtered(tables, warmth, brightness) if crtc in lit else tables
                                 for crtc, tables in enumerate(self.before)], 1)
        print(found or "dimmed")
        return found is None

    def becomes_untouched(self):
        return wait_until(self.is_untouched)

    def becomes_dimmed(self, *filter):
        return wait_until(lambda: self.is_dimmed(*filter))

    def ends_cleanly(self, program, number=signal.SIGTERM, patience=PATIENCE):
        """The program ends with status 0 and leaves no tint."""
        status = program.ends(number, patience)
        print("status", status)
        return status == 0 and self.is_untouched()
