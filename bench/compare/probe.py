"""The displays' tables, by way of the table_probe program."""

import subprocess
import sys

from processes import environment, started, wait_for

FULL = 65535
# How far levels may lie from what they are compared with and still be called the same curve: one step of a
# display's 8 bits, and the rounding of whoever computed them.
SAME_CURVE = 400


class Probe:
    def __init__(self, path):
        self._path = path

    def ask(self, *words, **variables):
        done = subprocess.run([self._path, *map(str, words)], capture_output=True, text=True, check=False,
                              env=environment("probe") | variables)
        if done.returncode not in (0, 2):
            sys.exit(f"table_probe {' '.join(map(str, words))}: {done.stderr.strip()}")
        return done

    def number(self, *words):
        """What it timed or counted."""
        return float(self.ask(*words).stdout)

    @staticmethod
    def wait_for_end():
        """Waits until all that it started has ended."""
        wait_for(lambda: not started("probe"), "the end of a program")

    def are(self, state, seconds=10):
        """Whether all displays are "warm" or "neutral" within so long."""
        return self.ask("await", state, seconds).returncode == 0

    def write(self, tables):
        self.ask("write", tables)

    def read(self):
        """Red, green, blue of the first display, then of the next."""
        return [[int(level) for level in line.split()] for line in self.ask("read").stdout.splitlines()]


def distance(some, others):
    """How far two sets of tables are apart at most."""
    return max(abs(one - other) for mine, theirs in zip(some, others) for one, other in zip(mine, theirs))


def ramps(tables):
    """Straight lines to where the tables end."""
    return [[table[-1] * i / (len(table) - 1) for i in range(len(table))] for table in tables]


def scaled(tables, like):
    """The tables, each multiplied so that it ends where those of `like` do."""
    return [[level * other[-1] / table[-1] for level in table] for table, other in zip(tables, like)]


def describe(tables, calibration, warm):
    """What the tables are, and how far they are from the calibration."""
    apart = distance(tables, calibration)
    if apart == 0:
        kind = "exact"
    elif warm:
        kind = "tinted"
    elif distance(tables, ramps(tables)) <= SAME_CURVE:
        kind = "straight ramp"
    elif apart <= SAME_CURVE:
        kind = "calibration"
    else:
        kind = "other"
    return [kind, apart]


def describe_filtered(tables, calibration):
    """Whose curve warm tables have, and how far they are from the scaled calibration."""
    apart = distance(tables, scaled(calibration, tables))
    if apart <= SAME_CURVE:
        return ["calibration scaled", apart]
    return ["own ramp" if distance(tables, ramps(tables)) <= SAME_CURVE else "other", apart]
