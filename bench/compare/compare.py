#!/usr/bin/python3
"""Measures Noctra beside redshift, gammastep and xsct on one X server, in turns; what it saw goes to a file.

usage: compare.py NOCTRA TABLE_PROBE RESULT [--quick]

Needs an X server and a session bus that starts nothing by itself; scripts/compare brings both.
"""

import json
import os
import pathlib
import signal
import sys
import threading

here = pathlib.Path(__file__).resolve().parent
sys.path[:0] = [str(here.parent), str(here.parent / "tray")]

from gi.repository import GLib

import calibrations
import latency
import living
from host import Host
from probe import Probe
from processes import kill_started
from programs import Programs


def say(what):
    print("  " + what, file=sys.stderr, flush=True)


def measure(probe, programs, quick):
    outputs = len(probe.read()) // 3
    few = outputs > 1  # what the tray's programs cost does not depend on the displays
    trays = [] if few else programs.trays
    everybody = [*programs.daemons, *trays]
    found = {"outputs": outputs, "load": [os.getloadavg()[0]], "counted": living.check_counter(probe)}
    say("commands to running programs")
    found["changes"] = latency.changes(probe, programs, turns=1 if quick else 5)
    say("starts")
    found["starts"] = latency.starts(probe, [*programs.daemons, *programs.one_shots, *trays],
                                     rounds=2 if quick else 30)
    say("memory")
    found["memory"] = living.sizes(probe, everybody)
    say("idling")
    found["idle"] = living.idling(probe, everybody, window=6 if quick else 60)
    say("another program's tables")
    found["foreign"] = living.foreign_writes(probe, programs.daemons, writes=1 if quick or few else 3)
    say("calibrations")
    found["kept"] = calibrations.kept(probe, [*programs.daemons, *programs.fresh],
                                      [*programs.one_shots, *programs.without_reset])
    say("endings")
    found["endings"] = calibrations.endings(probe, programs.daemons)
    found["load"].append(os.getloadavg()[0])
    return found


def main():
    noctra, probe, result, *options = sys.argv[1:]
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))  # what it has started ends with it
    Host()  # programs with an item in the tray find one
    threading.Thread(target=GLib.MainLoop().run, daemon=True).start()
    try:
        found = measure(Probe(probe), Programs(noctra), "--quick" in options)
    finally:
        kill_started()
    pathlib.Path(result).write_text(json.dumps(found))


if __name__ == "__main__":
    main()
