#!/usr/bin/python3
"""What Noctra in the tray costs beside other programs that tint the screen from there, in turns in one run.

usage: tray_bench.py NOCTRA BARE_ITEM

Needs an X server, and a session bus that starts nothing by itself; scripts/bench brings both. A program is
all of its processes together.
"""

import collections
import contextlib
import os
import pathlib
import shutil
import signal
import statistics
import subprocess
import sys
import time

from host import Host

STARTS = 21
LONG_RUNS = 3
SETTLING = 5  # seconds before anything is counted
WINDOW = 30  # seconds
PATIENCE = 20  # seconds
MARK = "NOCTRA_TRAY_BENCH"  # in the environment of all that a program starts

NOCTRA_SETTINGS = "[General]\nfilterIntensity=0.5\nhasShownFirstRunPopover=true\n"
# A place, so that nobody is asked for one, and one colour all day, there at once.
PEER_SETTINGS = """[{section}]
location-provider=manual
adjustment-method=randr
temp-day=3500
temp-night=3500
fade=0
[manual]
lat=52.5
lon=13.4
"""


class Program:
    def __init__(self, name, *command):
        self.name, self.command, self.process = name, command, None

    def start(self, host):
        """Milliseconds from before the fork until its item is registered."""
        host.registered = None
        begin = time.monotonic()
        self.process = subprocess.Popen(self.command, env=os.environ | {MARK: str(os.getpid())},
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        host.serve(PATIENCE, until=lambda: host.registered)
        if not host.registered:
            sys.exit(f"{self.name} does not register an item")
        return (host.registered - begin) * 1000

    def end(self):
        self.process.terminate()
        self.process.wait(PATIENCE)
        wait_for(lambda: not processes(), "the end of " + self.name)

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


def wait_for(condition, what):
    end = time.monotonic() + PATIENCE
    while not condition():
        if time.monotonic() > end:
            sys.exit("waited in vain for " + what)
        time.sleep(0.01)


def tinted():
    answer = subprocess.run(["xrandr", "--verbose"], check=True, capture_output=True, text=True).stdout
    return answer.split("Gamma:")[1].split()[0] != "1.0:1.0:1.0"


def processes():
    """Folders in /proc of all that the program has started."""
    found = []
    for file in pathlib.Path("/proc").glob("[0-9]*/environ"):
        with contextlib.suppress(OSError):  # it has just ended, or is none of ours
            if f"{MARK}={os.getpid()}\0".encode() in file.read_bytes():
                found.append(file.parent)
    return found


def memory():
    """Resident, proportional and private dirty, MiB."""
    sums = collections.Counter()
    for process in processes():
        for line in (process / "smaps_rollup").read_text().splitlines()[1:]:
            sums[line.split()[0]] += int(line.split()[1]) / 1024
    return [sums["Rss:"], sums["Pss:"], sums["Private_Dirty:"]]


def context_switches():
    return sum(int(line.split()[1]) for process in processes() for status in process.glob("task/*/status")
               for line in status.read_text().splitlines() if "ctxt_switches" in line)


def programs(noctra, bare_item):
    found = [Noctra("noctra", noctra), Program("bare Qt item", bare_item)]
    settings = {"noctra/noctra.conf": NOCTRA_SETTINGS}
    for name, section, file in (("redshift-gtk", "redshift", "redshift.conf"),
                                ("gammastep-indicator", "general", "gammastep/config.ini")):
        settings[file] = PEER_SETTINGS.format(section=section)
        if path := shutil.which(name):
            # Not by its own first line, which may find a Python that lacks what it needs.
            found.append(Peer(name, "/usr/bin/python3", path))
        else:
            print(f"  {name} is not installed, so it is left out")
    for file, text in settings.items():
        path = pathlib.Path(os.environ["XDG_CONFIG_HOME"], file)
        path.parent.mkdir(exist_ok=True)
        path.write_text(text)
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
        for process in processes():
            os.kill(int(process.name), signal.SIGKILL)


if __name__ == "__main__":
    main()
