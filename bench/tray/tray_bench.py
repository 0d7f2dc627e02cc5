#!/usr/bin/python3
"""What Noctra in the tray costs beside other programs that tint the screen from there, in turns in one run.

usage: tray_bench.py NOCTRA BARE_ITEM

Needs an X server, and a session bus that starts nothing by itself; scripts/bench brings both. A program is
all of its processes together.
"""

import pathlib
import shutil
import signal
import statistics
import subprocess
import sys
import time

from host import Host

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1]))
from processes import PATIENCE, context_switches, environment, kill_started, memory, started, wait_for
from settings import write_settings

STARTS = 21
LONG_RUNS = 3
SETTLING = 5  # seconds before anything is counted
WINDOW = 30  # seconds


class Program:
    def __init__(self, name, *command):
        self.name, self.command, self.process = name, command, None

    def start(self, host):
        """Milliseconds from before the fork until its item is registered."""
        host.registered = None
        begin = time.monotonic()
        self.process = subprocess.Popen(self.command, env=environment(),
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        host.serve(PATIENCE, until=lambda: host.registered)
        if not host.registered:
            sys.exit(f"{self.name} does not register an item")
        return (host.registered - begin) * 1000

    def end(self):
        self.process.terminate()
        self.process.wait(PATIENCE)
        wait_for(lambda: not started(), "the end of " + self.name)

    def turn(self, on):
        """Has no filter."""


class Noctra(Program):
    def turn(self, on):
        subprocess.run([*self.command, "noctra://on" if on else "noctra://off"], check=True)
        wait_for(lambda: tinted() == on, "the displays to follow " + self.name)


class Peer(Program):
    """Its filter is on from the start, which is over only then; a signal turns it."""

    def end(self):
        wait_for(tinted, "the tint of " + self.name)
        super().end()

    def turn(self, on):
        wait_for(lambda: tinted() != on, "the start of " + self.name)
        self.process.send_signal(signal.SIGUSR1)
        wait_for(lambda: tinted() == on, "the displays to follow " + self.name)


def tinted():
    answer = subprocess.run(["xrandr", "--verbose"], check=True, capture_output=True, text=True).stdout
    return answer.split("Gamma:")[1].split()[0] != "1.0:1.0:1.0"


def programs(noctra, bare_item):
    found = [Noctra("noctra", noctra), Program("bare Qt item", bare_item)]
    write_settings()
    for name in ("redshift-gtk", "gammastep-indicator"):
        if path := shutil.which(name):
            # Not by its own first line, which may find a Python that lacks what it needs.
            found.append(Peer(name, "/usr/bin/python3", path))
        else:
            print(f"  {name} is not installed, so it is left out")
    return found


def in_turns(rounds, compared, measure):
    """What `measure` gives, as columns of all rounds, by program."""
    rows = {program: [] for program in compared}
    for _ in range(rounds):
        for program in compared:
            rows[program].append(measure(program))
            program.end()
    return {program: list(zip(*each)) for program, each in rows.items()}


def live(program, host):
    """Memory with the filter off and on, then context switches a minute with the filter on."""
    end_of_start = time.monotonic() + SETTLING
    program.start(host)
    program.turn(False)
    host.serve(end_of_start - time.monotonic())
    off = memory()
    program.turn(True)
    host.serve(SETTLING)
    on, before = memory(), context_switches()
    host.serve(WINDOW)
    return [*off, *on, (context_switches() - before) * 60 / WINDOW]


def compare(compared, host):
    in_turns(1, compared, lambda program: [program.start(host)])  # brings everybody's files into memory
    print(f"An item in the tray, from before the fork until it is registered, {STARTS} rounds in turns")
    starts = in_turns(STARTS, compared, lambda program: [program.start(host)])
    own = statistics.median(starts[compared[0]][0])
    for program, [times] in starts.items():
        median = statistics.median(times)
        print(f"  {program.name:20} median {median:6.1f} ms  fastest {min(times):6.1f} ms"
              f"  slowest {max(times):6.1f} ms  ratio {median / own:5.2f}", flush=True)
    print(f"MiB resident (ratio), share, private dirty; context switches; medians of {LONG_RUNS} rounds")
    own = None
    for program, columns in in_turns(LONG_RUNS, compared, lambda each: live(each, host)).items():
        *sizes, switches = map(statistics.median, columns)
        own = own or sizes
        for state, at in ("off", 0), ("on", 3):
            print("  {:20} filter {:3} {:6.1f} ({:.2f}) {:6.1f} {:6.1f}".format(
                program.name, state, sizes[at], sizes[at] / own[at], *sizes[at + 1:at + 3]))
        print(f"  {program.name:20} idle {switches:.0f} a minute", flush=True)


def main():
    host = Host()
    try:
        compare(programs(*sys.argv[1:3]), host)
    finally:
        kill_started()


if __name__ == "__main__":
    main()
