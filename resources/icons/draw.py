#!/usr/bin/env python3
"""Draws Noctra's icons: writes one PDF file for each beside this script.

usage: draw.py

A page is 18 x 18 points. Coordinates run from its top left corner, to the right and down, so that whole
numbers fall between the pixels of an 18-pixel icon. Every icon but active.pdf is a template: one colour,
of which only the coverage counts. Needs nothing but Python; writes the same bytes every time.
"""

import math
import pathlib

SIZE = 18
BLACK = (0, 0, 0)
RED = (1, 0.27, 0.23)  # as the panel's switch glows
EMBER = (0.85, 0.19, 0.15)


# A path is a text of PDF operators. Paths that are put together are filled by the even-odd rule: what
# lies within a second one is cut out.


def number(value):
    return f"{round(value, 3) + 0.0:.3f}".rstrip("0").rstrip(".")  # never -0


def point(x, y):
    return f"{number(x)} {number(y)}"


def polygon(points):
    first, *others = (point(x, y) for x, y in points)
    return "\n".join([f"{first} m", *(f"{p} l" for p in others), "h"])


def arc(cx, cy, radius, start, end):
    """Curves along a circle from one angle to another (degrees, clockwise from the right); the pen is
    already at the start."""
    pieces = max(1, math.ceil(abs(end - start) / 90 - 1e-9))
    step = math.radians(end - start) / pieces
    handle = radius * 4 / 3 * math.tan(step / 4)
    curves = []
    for piece in range(pieces):
        a = math.radians(start) + piece * step
        b = a + step
        ax, ay = cx + radius * math.cos(a), cy + radius * math.sin(a)
        bx, by = cx + radius * math.cos(b), cy + radius * math.sin(b)
        curves.append(" ".join([
            point(ax - handle * math.sin(a), ay + handle * math.cos(a)),
            point(bx + handle * math.sin(b), by - handle * math.cos(b)),
            point(bx, by), "c"]))
    return "\n".join(curves)


def arcs(*parts):
    """A closed outline of arcs (cx, cy, radius, start, end), with straight lines where they do not meet."""
    lines = []
    for cx, cy, radius, start, end in parts:
        angle = math.radians(start)
        at = point(cx + radius * math.cos(angle), cy + radius * math.sin(angle))
        lines += [f"{at} {'l' if lines else 'm'}", arc(cx, cy, radius, start, end)]
    return "\n".join([*lines, "h"])


def circle(cx, cy, radius):
    return arcs((cx, cy, radius, 0, 360))


def box(left, top, right, bottom, radius):
    """A rectangle with round corners."""
    r = radius
    return arcs((right - r, top + r, r, -90, 0), (right - r, bottom - r, r, 0, 90),
                (left + r, bottom - r, r, 90, 180), (left + r, top + r, r, 180, 270))


def frame(left, top, right, bottom, radius, width):
    """A box, hollow but for a border of `width` on the inside."""
    return (box(left, top, right, bottom, radius) + "\n" +
            box(left + width, top + width, right - width, bottom - width, max(radius - width, 0.25)))


def crescent(cx, cy, radius, shade_x, shade_y, shade_radius):
    """The disc at (cx, cy), less the disc that shades it from (shade_x, shade_y) away."""
    distance = math.hypot(shade_x, shade_y)
    towards = math.degrees(math.atan2(shade_y, shade_x))
    along = (distance**2 + radius**2 - shade_radius**2) / (2 * distance)
    horn = math.degrees(math.acos(along / radius))
    inner_horn = math.degrees(math.acos((along - distance) / shade_radius))
    return arcs((cx, cy, radius, towards + horn, towards + 360 - horn),
                (cx + shade_x, cy + shade_y, shade_radius, towards + 360 - inner_horn,
                 towards + inner_horn))


def ring_piece(cx, cy, outer, inner, start, end):
    """A part of a ring with round ends."""
    middle, half = (outer + inner) / 2, (outer - inner) / 2
    cap = [(cx + middle * math.cos(math.radians(a)), cy + middle * math.sin(math.radians(a)))
           for a in (start, end)]
    return arcs((cx, cy, outer, start, end), (*cap[1], half, end, end + 180),
                (cx, cy, inner, end, start), (*cap[0], half, start + 180, start + 360))


def tick(a, b, c, width):
    """A check mark from a over b to c with round ends and a round knee."""
    half = width / 2
    first = math.degrees(math.atan2(b[1] - a[1], b[0] - a[0]))
    second = math.degrees(math.atan2(c[1] - b[1], c[0] - b[0]))
    # The inner corner, where the two strokes' upper edges meet.
    bend = math.radians((first - second) / 2)
    bisector = math.radians((first + second) / 2 - 90)
    inner = (b[0] + half / math.cos(bend) * math.cos(bisector),
             b[1] + half / math.cos(bend) * math.sin(bisector))
    return arcs((*a, half, first + 90, first + 270), (*inner, 0, 0, 0),
                (*c, half, second - 90, second + 90), (*b, half, second + 90, first + 90))


def gear(cx, cy, tip, root, hole, teeth):
    points = []
    for tooth in range(teeth):
        middle = 360 / teeth * tooth - 90
        for radius, offset in ((root, -0.31), (tip, -0.2), (tip, 0.2), (root, 0.31)):
            angle = math.radians(middle + offset * 360 / teeth)
            points.append((cx + radius * math.cos(angle), cy + radius * math.sin(angle)))
    return polygon(points) + "\n" + circle(cx, cy, hole)


# A screen by night: lit, with the moon cut out of it, or as an outline with the moon in it.
SCREEN = (1, 2, 17, 13, 2.5)
STAND = box(8, 13, 10, 15, 0) + "\n" + box(5, 15, 13, 16, 0.5)

ICONS = {
    "active": [
        (RED, box(*SCREEN) + "\n" + crescent(9, 7.5, 4, 2.2, -1.2, 3.3)),
        (EMBER, STAND),
    ],
    "off": [
        (BLACK, frame(*SCREEN, 1.5)),
        (BLACK, crescent(9.25, 7.5, 3.25, 2, -1.1, 2.6)),
        (BLACK, STAND),
    ],
    "gear": [(BLACK, gear(9, 9, 8, 6, 2.75, 8))],
    "clipboard": [
        (BLACK, frame(3, 2, 15, 17, 2, 1.5)),
        (BLACK, box(6, 1, 12, 4, 1)),
        (BLACK, box(6, 7, 12, 8, 0.5)),
        (BLACK, box(6, 10, 12, 11, 0.5)),
        (BLACK, box(6, 13, 10, 14, 0.5)),
    ],
    "check": [(BLACK, circle(9, 9, 8) + "\n" + tick((5.5, 9.3), (8, 11.8), (12.7, 6.4), 1.9))],
    "power": [
        (BLACK, ring_piece(9, 9.5, 7.5, 5.5, -50, 230)),
        (BLACK, box(8, 1, 10, 9, 1)),
    ],
}


def content(shapes):
    operators = [f"1 0 0 -1 0 {SIZE} cm"]
    for colour, path in shapes:
        operators += [" ".join(map(number, colour)) + " rg", path, "f*"]
    return "\n".join(operators) + "\n"


def pdf(shapes):
    """One page with nothing on it but the shapes; see PDF 1.4, chapter 3.4 for the file's frame."""
    stream = content(shapes)
    objects = [
        "<< /Type /Catalog /Pages 2 0 R >>",
        "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        f"<< /Type /Page /Parent 2 0 R /MediaBox [0 0 {SIZE} {SIZE}] /Resources << >>"
        " /Contents 4 0 R >>",
        f"<< /Length {len(stream)} >>\nstream\n{stream}endstream",
    ]
    text, offsets = "%PDF-1.4\n", []
    for index, body in enumerate(objects, start=1):
        offsets.append(len(text))
        text += f"{index} 0 obj\n{body}\nendobj\n"
    table = "".join(f"{offset:010} 00000 n \n" for offset in offsets)
    count = len(objects) + 1
    return (f"{text}xref\n0 {count}\n0000000000 65535 f \n{table}"
            f"trailer\n<< /Size {count} /Root 1 0 R >>\nstartxref\n{len(text)}\n%%EOF\n")


if __name__ == "__main__":
    for name, drawn in ICONS.items():
        (pathlib.Path(__file__).parent / f"{name}.pdf").write_bytes(pdf(drawn).encode("ascii"))
