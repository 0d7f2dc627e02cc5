"""Puts what comes on standard input between the marks of a page.

usage: insert.py PAGE
"""

import pathlib
import sys

BEGIN, END = "<!-- scripts/compare writes from here -->\n", "<!-- to here -->\n"


def main():
    page = pathlib.Path(sys.argv[1])
    text = page.read_text()
    if text.count(BEGIN) != 1 or text.count(END) != 1 or text.index(BEGIN) > text.index(END):
        sys.exit(f"{page} does not have the marks between which the figures belong")
    before, rest = text.split(BEGIN)
    page.write_text(before + BEGIN + sys.stdin.read() + END + rest.split(END)[1])


if __name__ == "__main__":
    main()
