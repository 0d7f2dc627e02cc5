"""The programs compared, set as their users would set them, but without fading."""

import shutil
import subprocess
import sys

from processes import PATIENCE, environment, started, wait_for
from settings import write_settings

WARMTH = "3500"  # kelvin


class Running:
    """A program that stays, with the filter on from its start."""

    first_switch_to = "neutral"

    def __init__(self, name, *command):
        self.name, self.command, self._process = name, command, None

    def start(self, probe, **variables):
        """Comes back when the displays are tinted."""
        self._process = subprocess.Popen(self.command, env=environment(self.name) | variables,
                                         stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        if not probe.are("warm"):
            sys.exit(self.name + " does not tint the displays")

    def end(self, how):
        self._process.send_signal(how)
        self._process.wait(PATIENCE)
        wait_for(lambda: not started(self.name), "the end of " + self.name)

    def launch(self):
        """What the probe is to do to time a start."""
        return ["start", "warm", *self.command]

    def switches(self):
        """Ways to switch it, by their names: what the probe is to do to bring a state about."""
        return {self.name + ", SIGUSR1": lambda state: ["signal", state, self._process.pid]}


class Noctra(Running):
    def __init__(self, program):
        super().__init__("noctra", program, "noctra://on")

    def switches(self):
        urls = {"warm": "noctra://on", "neutral": "noctra://off"}
        return {
            "noctra, command": lambda state: ["run", state, self.command[0], urls[state]],
            "noctra, call over the session bus": lambda state: ["open", state, urls[state]],
        }


class OneShot:
    """A program that sets the tables and ends."""

    first_switch_to = "warm"

    def __init__(self, warm, neutral):
        self.name = " ".join(warm[:-1])
        self._commands = {"warm": warm, "neutral": neutral}

    def launch(self):
        return self.switch("warm")

    def switch(self, state):
        return ["run", state, *self._commands[state]]

    def switches(self):
        return {f"{self.name} / {' '.join(self._commands['neutral'])}": self.switch}


def require(*names):
    missing = [name for name in names if not shutil.which(name)]
    if missing:
        sys.exit("not installed: " + ", ".join(missing) + "; scripts/install-deps --bench brings them")


class Programs:
    def __init__(self, noctra):
        require("redshift", "gammastep", "xsct", "redshift-gtk", "gammastep-indicator")
        write_settings()
        self.noctra = Noctra(noctra)
        self.daemons = [self.noctra, Running("redshift", "redshift"), Running("gammastep", "gammastep")]
        # Not by their own first line, which may find a Python that lacks what they need.
        self.trays = [Running(name, "/usr/bin/python3", shutil.which(name))
                      for name in ("redshift-gtk", "gammastep-indicator")]
        self.fresh = [Running(name + " -P", name, "-P") for name in ("redshift", "gammastep")]
        self.one_shots = [OneShot([*name, WARMTH], neutral) for name, neutral in (
            (["redshift", "-P", "-O"], ["redshift", "-x"]),
            (["gammastep", "-P", "-O"], ["gammastep", "-x"]),
            (["xsct"], ["xsct", "6500"]))]
        self.without_reset = [OneShot([name, "-O", WARMTH], [name, "-x"])
                              for name in ("redshift", "gammastep")]
