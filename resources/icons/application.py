#!/usr/bin/env python3
"""Draws the icon by which desktops show Noctra: writes the files in the folder hicolor beside this script.

usage: application.py

The same screen by night as in the panel (draw.py), as a drawing of any size, as one in a single colour, and
as pictures of some sizes. The pictures take Debian's librsvg2-bin.
"""

import pathlib
import subprocess

from draw import box, crescent

NAME = "org.noctra.Noctra"
PICTURES = (48, 128, 256)

# What draw.py's paths are made of, in SVG's words.
OPERATORS = {"m": "M", "l": "L", "c": "C", "h": "Z"}


def path(paint, *parts):
    """Parts of a drawing that are filled together, by the even-odd rule."""
    pieces = []
    for line in "\n".join(parts).splitlines():
        *numbers, operator = line.split()
        pieces.append(OPERATORS[operator] + " ".join(numbers))
    return f'<path fill="{paint}" fill-rule="evenodd" d="{"".join(pieces)}"/>'


def gradient(name, *stops):
    """From the top of what it paints to the bottom; a stop is (offset, colour)."""
    colours = "".join(f'<stop offset="{offset}" stop-color="{colour}"/>' for offset, colour in stops)
    return f'<linearGradient id="{name}" x1="0" y1="0" x2="0" y2="1">{colours}</linearGradient>'


def svg(size, *elements):
    return "\n".join([
        f'<svg xmlns="http://www.w3.org/2000/svg" width="{size}" height="{size}"'
        f' viewBox="0 0 {size} {size}">', *elements, "</svg>", ""])


def full():
    """The panel's dark face, with the power button's red on it."""
    glow = ('<radialGradient id="glow"><stop offset="0" stop-color="#ff2a1a" stop-opacity="0.55"/>'
            '<stop offset="0.6" stop-color="#ff2a1a" stop-opacity="0.2"/>'
            '<stop offset="1" stop-color="#ff2a1a" stop-opacity="0"/></radialGradient>')
    return svg(
        128,
        "<defs>",
        gradient("rim", (0, "#4a4a4a"), (0.25, "#2c2c2c"), (1, "#000000")),
        gradient("face", (0, "#242424"), (0.55, "#121212"), (1, "#0a0a0a")),
        gradient("edge", (0, "#ff7a70"), (0.2, "#e0140c"), (1, "#8c0000")),
        gradient("screen", (0, "#f01a10"), (1, "#b40000")),
        gradient("stand", (0, "#8c0000"), (1, "#b81008")),
        glow,
        "</defs>",
        path("url(#rim)", box(6, 6, 122, 122, 28)),
        path("url(#face)", box(8, 8, 120, 120, 26)),
        '<ellipse cx="64" cy="61" rx="56" ry="50" fill="url(#glow)"/>',
        path("url(#stand)", box(57, 82, 71, 96, 0), box(42, 94, 86, 101, 3.5)),
        path("url(#edge)", box(24, 30, 104, 85, 12)),
        path("url(#screen)", box(25.5, 31.5, 102.5, 83.5, 10.5)),
        path("#ffffff", crescent(62.5, 57.5, 19, 10, -5.5, 15.5)))


def symbolic():
    return svg(16, path("#2e3436", box(1, 2, 15, 12, 2), crescent(7.75, 7, 3.5, 1.9, -1, 2.9)),
               path("#2e3436", box(7, 12, 9, 13, 0), box(4, 13, 12, 14, 0.5)))


def write(folder, name, text):
    file = pathlib.Path(__file__).parent / "hicolor" / folder / "apps" / name
    file.parent.mkdir(parents=True, exist_ok=True)
    file.write_text(text, encoding="ascii")
    return file


drawing = write("scalable", f"{NAME}.svg", full())
write("symbolic", f"{NAME}-symbolic.svg", symbolic())
for size in PICTURES:
    picture = drawing.parents[2] / f"{size}x{size}" / "apps" / f"{NAME}.png"
    picture.parent.mkdir(parents=True, exist_ok=True)
    subprocess.run(["rsvg-convert", "-w", str(size), "-h", str(size), "-o", picture, drawing], check=True)
