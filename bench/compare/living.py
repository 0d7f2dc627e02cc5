"""What programs cost while the filter is on, and what they do about tables that somebody else writes."""

import signal
import sys
import time

from processes import context_switches, memory
from x_proxy import XProxy

SETTLING = 4  # seconds before anything is counted
PATIENCE = 15  # seconds, for tables to be put back


def sizes(probe, programs):
    """MiB resident, proportional and private dirty, of each program by itself."""
    found = {}
    for program in programs:
        probe.write("linear")
        program.start(probe)
        time.sleep(SETTLING)
        found[program.name] = memory(program.name)
        program.end(signal.SIGTERM)
    return found


def check_counter(probe):
    """Requests of a client that knows how many it sends, and how many were counted."""
    proxy = XProxy()
    sent = int(probe.ask("requests", DISPLAY=proxy.display).stdout)
    if sent != proxy.requests():
        sys.exit(f"{sent} X requests were counted as {proxy.requests()}")
    return sent


def idling(probe, programs, window):
    """Context switches and X requests a minute, seen for `window` seconds, of all programs at the same time;
    each is connected to the X server through a counter of its own."""
    proxies = {program.name: XProxy() for program in programs}

    def counts():
        return {name: [context_switches(name), proxy.requests()] for name, proxy in proxies.items()}

    for program in programs:
        probe.write("linear")
        program.start(probe, DISPLAY=proxies[program.name].display)
    time.sleep(SETTLING)
    before, begun = counts(), time.monotonic()
    time.sleep(window)
    minutes = (time.monotonic() - begun) / 60
    after = counts()
    for program in programs:
        program.end(signal.SIGTERM)
    return {name: [(now - then) / minutes for now, then in zip(after[name], before[name])]
            for name in after}


def foreign_writes(probe, programs, writes):
    """Seconds from when somebody else writes linear tables until they are warm again; None for never."""
    found = {}
    for program in programs:
        probe.write("linear")
        program.start(probe)
        time.sleep(1)  # its start is over
        found[program.name] = []
        while len(found[program.name]) < writes and None not in found[program.name]:
            answer = probe.ask("foreign", PATIENCE).stdout.strip()
            found[program.name].append(None if answer == "never" else float(answer))
        program.end(signal.SIGTERM)
    return found
