"""What becomes of a display's calibration: under the filter, without it, and on every way out."""

import signal
import time

from probe import describe, describe_filtered, distance

SETTLING = 0.5  # seconds after a start


def kept(probe, programs, one_shots):
    """By program: the curve under the filter, the tables with the filter off again."""
    found = {}
    for program in [*programs, *one_shots]:
        calibration = calibrated(probe)
        if program in programs:
            start(probe, program)
        else:
            probe.ask(*program.launch())
        filtered = probe.read()
        way = next(iter(program.switches().values()))
        probe.ask(*way("neutral"))
        found[program.name] = {"filtered": describe_filtered(filtered, calibration),
                               "off": after(probe, calibration)}
        if program in programs:
            program.end(signal.SIGTERM)
    return found


def endings(probe, programs):
    """By program and ending: the tables after it. After SIGKILL, also those after a second start, its filter
    on, and then its ordinary end; the first with the distance from the filter of the first start."""
    found = {}
    for program in programs:
        its = found[program.name] = {}
        for name in "SIGTERM", "SIGINT", "SIGKILL":
            calibration = calibrated(probe)
            start(probe, program)
            filtered = probe.read()
            program.end(signal.Signals[name])
            its[name] = after(probe, calibration)
        start(probe, program)
        its["second start"] = distance(probe.read(), filtered)
        program.end(signal.SIGTERM)
        its["second end"] = after(probe, calibration)
    return found


def calibrated(probe):
    probe.write("calibration")
    return probe.read()


def start(probe, program):
    program.start(probe)
    time.sleep(SETTLING)


def after(probe, calibration):
    """The tables, and how far they are from the calibration."""
    return describe(probe.read(), calibration, warm=probe.are("warm", 0))
