"""The processes of the programs that a benchmark starts, all those that they start themselves included."""

import collections
import contextlib
import os
import pathlib
import signal
import sys
import time

MARK = "NOCTRA_BENCH"  # in the environment of all that a program starts
PATIENCE = 20  # seconds


def environment(name=""):
    """For a program that is to be found again."""
    return os.environ | {MARK: f"{os.getpid()} {name}"}


def started(name=""):
    """Folders in /proc of all that the program of that name has started; without a name, of all."""
    mark = f"{MARK}={os.getpid()} {name}".encode() + (b"\0" if name else b"")
    found = []
    for file in pathlib.Path("/proc").glob("[0-9]*/environ"):
        with contextlib.suppress(OSError):  # it has just ended, or is none of ours
            if mark in file.read_bytes():
                found.append(file.parent)
    return found


def memory(name=""):
    """Resident, proportional and private dirty, MiB."""
    sums = collections.Counter()
    for process in started(name):
        for line in (process / "smaps_rollup").read_text().splitlines()[1:]:
            sums[line.split()[0]] += int(line.split()[1]) / 1024
    return [sums["Rss:"], sums["Pss:"], sums["Private_Dirty:"]]


def context_switches(name=""):
    return sum(int(line.split()[1]) for process in started(name) for status in process.glob("task/*/status")
               for line in status.read_text().splitlines() if "ctxt_switches" in line)


def kill_started():
    for process in started():
        with contextlib.suppress(ProcessLookupError):
            os.kill(int(process.name), signal.SIGKILL)


def wait_for(condition, what):
    end = time.monotonic() + PATIENCE
    while not condition():
        if time.monotonic() > end:
            sys.exit("waited in vain for " + what)
        time.sleep(0.01)
