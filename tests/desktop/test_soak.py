"""The program on a desk on which everything goes wrong, one thing after the other: a random action, quiet,
and then the displays carry what the last command says. NOCTRA_SOAK_SECONDS lets it go on for longer,
NOCTRA_SOAK_SEED repeats a run; each step is printed."""

import os
import random
import shutil
import signal
import time

from curve import calibration
from desk import SANITIZED, wait_until
from machine import Backlight, Logind, TrayHost
from panel import BRIGHTNESS, POWER, PWM_SAFE, WARMTH, at

PRESETS = {"DAY": (1 - 4000 / 6500, 1), "EVENING": (1 - 2700 / 6500, 0.85), "NIGHT": (1, 0.7)}
# What the program may complain of.
COMPLAINTS = ("Wake from sleep cannot be noticed", "session bus", "table record")
MORE_KIB, MORE_THREADS, MORE_FILES = 60 * 1024, 8, 24  # than at first: far below a leak in each round


class Soak:
    """What is done to the desk, and what is known of it."""

    def __init__(self, desk, panel, chance):
        self.desk, self.panel, self.chance = desk, panel, chance
        # The same on all, so that it does not matter which display gets which CRTC.
        desk.before = [calibration(256, 3)] * len(desk.server.crtcs)
        desk.server.write(desk.before)
        self.backlight, self.level = Backlight(desk, 400), 400
        self.restart_the_system_bus()
        self.tray = TrayHost(desk, "embedded")
        self.tray.start()
        self.on, self.filter, self.locked, self.remembered = False, (0.5, 0.6), False, False
        self.first, self.places = None, None
        self.start()

    def start(self):
        self.program = self.desk.start(under=self.backlight.under)
        assert self.program.says("Tray: ")
        self.on = self.locked = False
        self.first = None

    # Actions.

    def command(self):
        word = self.chance.choice(["on", "off", "toggle"])
        self.desk.open(f"noctra://{word}")
        self.on = not self.on if word == "toggle" else word == "on"

    def flood(self):
        for word in self.chance.choices(["on", "off", "toggle", "nonsense"], k=200):
            self.desk.open(f"noctra://{word}", wait=False)
        self.desk.open("noctra://on")
        self.on = True

    def plug(self):
        output = self.chance.randrange(1, 6)
        (self.desk.server.unplug if self.desk.server.info(output).crtc else self.desk.server.plug)(output)
        self.settle()

    def mode(self):
        output, mode = self.chance.randrange(1, 3), self.chance.choice(["800x600", "1024x768", "640x480"])
        if self.desk.server.info(output).crtc:
            self.desk.xrandr("--addmode", f"DUMMY{output}", mode)
            self.desk.xrandr("--output", f"DUMMY{output}", "--mode", mode)
            self.settle()

    def sleep_and_wake(self):
        if self.on:  # some drivers come back with a table of their own
            self.desk.server.write(self.desk.before)
        refreshes = self.program.count("Refreshing displays (wake")
        self.logind.sleep_and_wake()
        if self.on:
            assert self.program.says("Refreshing displays (wake", refreshes + 1)
            self.settle()

    def forget_the_record(self):
        shutil.rmtree(self.desk.folder / "runtime/noctra", ignore_errors=True)

    def restart_the_session_bus(self):
        back = self.program.count("commands from other programs available again")
        self.desk.bus.start()
        assert self.program.says("commands from other programs available again", back + 1)

    def restart_the_system_bus(self):
        self.logind = Logind(self.desk)
        self.logind.obey(self.backlight)

    def restart_the_tray(self):
        self.tray.kill()
        self.tray.start()

    def stop_the_server(self):
        self.desk.server.stop()
        time.sleep(0.3)
        self.desk.server.resume()

    def stop_the_program(self):
        """While it is stopped a lot comes together."""
        self.program.signal(signal.SIGSTOP)
        for word in self.chance.choices(["on", "off"], k=10):
            self.desk.open(f"noctra://{word}", wait=False)
            self.on = word == "on"
        if self.desk.server.info(1).crtc:
            self.desk.server.unplug(1)
        self.program.signal(signal.SIGCONT)
        self.settle()

    def is_saved(self):
        values = dict(line.split("=") for line in self.desk.preferences.read_text().splitlines()[1:])
        return abs(float(values["filterIntensity"]) - self.filter[0]) < 1e-9 and \
            abs(float(values["filterBrightness"]) - self.filter[1]) < 1e-9

    def kill(self):
        assert wait_until(self.is_saved)
        self.program.kill()
        self.start()
        assert self.desk.is_untouched()
        self.backlight.set(self.level)  # the person's, after a kill

    def end(self):
        assert wait_until(self.is_saved)
        assert self.desk.ends_cleanly(self.program, self.chance.choice(
            [signal.SIGTERM, signal.SIGINT, signal.SIGHUP]))
        assert self.backlight.value == self.level
        self.start()

    def set_the_backlight(self):
        if not self.locked:  # else it depends on the moment: the mode gives up where it cannot be verified
            self.level = self.chance.choice([400, 850, 1000])
            self.backlight.set(self.level)

    def use_the_panel(self):
        self.desk.open("noctra://show")
        assert wait_until(self.rests)
        if not self.locked and self.remembered:  # comes back with the panel, and takes the level of now
            assert self.program.says("PWM-Safe enabled")
            self.locked = True
        self.learn_places()
        what = self.chance.choice([*PRESETS, POWER, WARMTH, BRIGHTNESS, PWM_SAFE])
        left, top, _, _ = self.panel.hands.windows()[0]
        x, y, width, height = self.places[what]
        box = left + x, top + y, width, height
        print("on", what, end=" ")
        if what in (WARMTH, BRIGHTNESS):
            up = self.chance.choice([True, False])
            self.panel.hands.drag(at(box, 0.5, up), at(box, 0.5, not up))
            warmth, brightness = self.filter
            self.filter = (float(up), brightness) if what == WARMTH else (warmth, 1 if up else 0.1)
        else:
            self.panel.hands.click(*at(box, 0.5, 0.5))
        if what in PRESETS:
            self.filter, self.on = PRESETS[what], True
        elif what == POWER:
            self.on = not self.on
        elif what == PWM_SAFE:
            self.locked = self.remembered = not self.locked
            assert self.backlight.becomes(1000 if self.locked else self.level)
        self.panel.dismiss()

    def rests(self):
        """The panel is shown, and follows its item no more: a new item takes its place a moment later."""
        before = self.panel.hands.windows()
        time.sleep(0.5)
        return before and before == self.panel.hands.windows()

    def learn_places(self):
        """Once, since assistive technology goes with the first session bus."""
        if self.places is None:
            left, top, _, _ = self.panel.place("NOCTRA")
            self.places = {}
            for name in (*PRESETS, POWER, WARMTH, BRIGHTNESS, PWM_SAFE):
                x, y, width, height = self.panel.place(name)
                self.places[name] = x - left, y - top, width, height

    # Checks.

    def settle(self):
        """Until the changes of the displays so far have been answered, the second pass included."""
        if self.on:
            passes = self.program.count("Display settle pass reapply")
            self.desk.server.announce_change(1001)
            self.desk.server.announce_change(1000)
            assert self.program.says("Display settle pass reapply", passes + 1)

    def check(self):
        is_as_expected = (lambda: self.desk.is_dimmed(*self.filter)) if self.on else self.desk.is_untouched
        assert wait_until(is_as_expected)
        assert self.backlight.becomes(1000 if self.locked else self.level)
        assert self.program.child.poll() is None
        for line in self.program.messages():
            assert "rror" not in line.lower() or any(known in line for known in COMPLAINTS), line
        use = self.use()
        self.first = self.first or use
        # The address sanitizer keeps what is freed.
        limits = (MORE_KIB * (10 if SANITIZED else 1), MORE_THREADS, MORE_FILES)
        for now, then, more in zip(use, self.first, limits):
            assert now <= then + more, (use, self.first)

    def use(self):
        process = f"/proc/{self.program.child.pid}"
        with open(process + "/status") as status:
            kib = next(int(line.split()[1]) for line in status if line.startswith("VmRSS"))
        return kib, len(os.listdir(process + "/task")), len(os.listdir(process + "/fd"))


def test_whatever_happens_the_displays_carry_what_the_last_command_says(desk, panel, capfd):
    seed = int(os.environ.get("NOCTRA_SOAK_SEED", 20261123))
    end = time.monotonic() + int(os.environ.get("NOCTRA_SOAK_SECONDS", 30))
    chance = random.Random(seed)
    soak = Soak(desk, panel, chance)
    soak.use_the_panel()
    actions = [soak.command, soak.flood, soak.plug, soak.mode, soak.sleep_and_wake, soak.forget_the_record,
               soak.restart_the_session_bus, soak.restart_the_system_bus, soak.restart_the_tray,
               soak.stop_the_server, soak.stop_the_program, soak.kill, soak.end, soak.set_the_backlight,
               *[soak.use_the_panel] * 4]
    with capfd.disabled():
        print("seed", seed)
    while time.monotonic() < end:
        action = chance.choice(actions)
        print(">", action.__name__, end=" ", flush=True)
        action()
        soak.check()
    soak.end()
