"""How soon the displays follow: a program that runs and is told to, and one that is started."""

import signal
import time

SETTLING = 1  # seconds after a start, until its last work is done
SWITCHES_A_TURN = 6


def changes(probe, programs, turns):
    """Microseconds from a command until all displays have followed, by kind of command, in turns."""
    times = {}

    def alternate(program):
        order = ("neutral", "warm") if program.first_switch_to == "neutral" else ("warm", "neutral")
        for name, way in program.switches().items():
            for index in range(SWITCHES_A_TURN):
                times.setdefault(name, []).append(probe.number(*way(order[index % 2])))

    for _ in range(turns):
        for program in programs.daemons:
            probe.write("linear")
            program.start(probe)
            time.sleep(SETTLING)
            alternate(program)
            program.end(signal.SIGTERM)
        for program in programs.one_shots:
            probe.write("linear")
            alternate(program)
    return times


def starts(probe, programs, rounds):
    """Microseconds from before the start of a program until all displays are warm, by program, in turns."""
    times = {program.name: [] for program in programs}
    for _ in range(rounds):
        for program in programs:
            probe.write("linear")
            times[program.name].append(probe.number(*program.launch()))
            probe.wait_for_end()
    return times
