"""Prints what compare.py has measured, as a section of a page in Markdown.

usage: report.py NOCTRA RESULT...
"""

import datetime
import json
import math
import pathlib
import statistics
import sys

import machine

NOT_MEASURED = "–"  # the displays make no difference to it


def p95(values):
    ordered = sorted(values)
    return ordered[math.ceil(0.95 * len(ordered)) - 1]


def table(titles, rows):
    yield "| " + " | ".join(titles) + " |"
    yield "|---" + "|--:" * (len(titles) - 1) + "|"
    for row in rows:
        yield "| " + " | ".join(map(str, row)) + " |"
    yield ""


def plural(outputs):
    return f"{outputs} display" + ("s" if outputs > 1 else "")


def times(results, what, title):
    """Median, p95 and the median's ratio to the first row's, for each number of displays."""
    titles, rows = [title], {}
    for result in results:
        titles += [plural(result["outputs"]) + ": ratio", "median ms", "p95 ms"]
    for at, result in enumerate(results):
        own = statistics.median(next(iter(result[what].values())))
        for name, values in result[what].items():
            cells = rows.setdefault(name, [NOT_MEASURED] * 3 * len(results))
            median = statistics.median(values)
            cells[at * 3:at * 3 + 3] = [f"{median / own:.2f}", f"{median / 1000:.2f}",
                                        f"{p95(values) / 1000:.2f}"]
    return table(titles, [[name, *cells] for name, cells in rows.items()])


def sizes(result):
    own = next(iter(result["memory"].values()))
    titles = [plural(result["outputs"])]
    for kind in "resident", "share", "private dirty":
        titles += [kind + ": ratio", "MiB"]
    rows = []
    for name, its in result["memory"].items():
        pairs = [(f"{size / mine:.2f}", f"{size:.1f}") for size, mine in zip(its, own)]
        rows.append([name, *(cell for pair in pairs for cell in pair)])
    return table(titles, rows)


def idling(results):
    titles = ["a minute"]
    for result in results:
        titles += [plural(result["outputs"]) + ": context switches", "ratio", "X requests"]
    rows = []
    for name in results[0]["idle"]:
        cells = []
        for result in results:
            own = next(iter(result["idle"].values()))[0]
            switches, requests = result["idle"].get(name, (None, None))
            cells += [NOT_MEASURED] * 3 if switches is None else [
                f"{switches:.0f}", f"{switches / own:.2f}", f"{requests:.0f}"]
        rows.append([name, *cells])
    return table(titles, rows)


def foreign(results):
    def seconds(values):
        return "not within 15 s" if None in values else ", ".join(f"{value:.1f} s" for value in values)
    return table(["put back after", *(plural(result["outputs"]) for result in results)],
                 [[name, *(seconds(result["foreign"][name]) for result in results)]
                  for name in results[0]["foreign"]])


def described(kind, apart):
    return kind if apart == 0 else f"{kind} ({apart:.0f})"


def kept(results):
    titles = ["started on a calibrated display"]
    for result in results:
        titles += [plural(result["outputs"]) + ": filter on", "off again"]
    return table(titles, [[name, *(described(*result["kept"][name][state]) for result in results
                                   for state in ("filtered", "off"))] for name in results[0]["kept"]])


def endings(results):
    titles = ["displays after", "SIGTERM", "SIGINT", "SIGKILL", "started again: off its first filter by",
              "SIGTERM after that"]
    for result in results:
        titles[0] = plural(result["outputs"]) + " after"
        yield from table(titles, [
            [name, *(described(*its[how]) for how in ("SIGTERM", "SIGINT", "SIGKILL")),
             f"{its['second start']:.0f}", described(*its["second end"])]
            for name, its in result["endings"].items()])


def report(noctra, results):
    load = ", ".join(f"{value:.1f}" for result in results for value in result["load"])
    rounds = len(next(iter(results[0]["starts"].values())))
    changes = len(next(iter(results[0]["changes"].values())))
    yield (f"{datetime.date.today()}; {machine.machine()}; Xorg with the dummy driver; load average before and "
           f"after each half: {load}. " + "; ".join(machine.versions(noctra)) + ".")
    yield ""
    yield "### From a command until all displays have followed"
    yield ""
    yield (f"On and off alternately, {changes} times each. The time runs from before the fork of the command, "
           "from before the signal, or from before the call by a program that is on the bus already.")
    yield ""
    yield from times(results, "changes", "command")
    yield "### From before the fork of the program until all displays are tinted"
    yield ""
    yield f"Started with the filter on, {rounds} times each."
    yield ""
    yield from times(results, "starts", "start")
    yield "### Memory"
    yield ""
    yield "With the filter on, all processes of a program together."
    yield ""
    for result in results:
        yield from sizes(result)
    yield "### Idle with the filter on"
    yield ""
    yield ("All programs at the same time, for a minute. What counted the X requests was tried in this run on a "
           f"program that knows how many it sends, and counted its {results[0]['counted']} right.")
    yield ""
    yield from idling(results)
    yield "### Another program writes linear tables while the filter is on"
    yield ""
    yield ("The first time about a second after the program's start, then each time as soon as it has put its tables "
           "back.")
    yield ""
    yield from foreign(results)
    yield "### A calibrated display"
    yield ""
    yield ("Its curves differ by channel. With the filter on: how far the tables are at most, of 65535, from "
           "the calibration scaled; else how far from the calibration. \"exact\" is byte for byte.")
    yield ""
    yield from kept(results)
    yield "### Endings on that display"
    yield ""
    yield "After SIGKILL the program is started again, and then ended by SIGTERM."
    yield ""
    yield from endings(results)


def main():
    noctra, *files = sys.argv[1:]
    results = [json.loads(pathlib.Path(file).read_text()) for file in files]
    print("\n".join(report(noctra, results)).rstrip())


if __name__ == "__main__":
    main()
