#!/usr/bin/python3
"""Makes Noctra's font files out of the web fonts of the npm package @fontsource/anybody.

usage: convert.py PACKAGE      PACKAGE: the unpacked package; writes beside this script

The outlines stay as they are. The names are set anew: the package makes each weight a family of its
own, while programs look for one family with two weights.
"""

import pathlib
import sys

from fontTools.ttLib import TTFont

FAMILY = "Anybody"
STYLES = {"Bold": 700, "ExtraBold": 800}
WINDOWS, UNICODE_BMP, ENGLISH = 3, 1, 0x409


def names(style):
    """The texts by OpenType's name ids."""
    is_bold = style == "Bold"
    return {
        1: FAMILY if is_bold else f"{FAMILY} {style}",  # for programs that know bold alone
        2: "Bold" if is_bold else "Regular",
        3: f"{FAMILY}-{style}",
        4: f"{FAMILY} {style}",
        6: f"{FAMILY}-{style}",  # the PostScript name
        16: FAMILY,
        17: style,
    }


def convert(package, style, weight):
    source = package / "files" / f"anybody-latin-{weight}-normal.woff"
    font = TTFont(source, recalcTimestamp=False)
    for name_id, text in names(style).items():
        font["name"].setName(text, name_id, WINDOWS, UNICODE_BMP, ENGLISH)
    font["OS/2"].usWeightClass = weight
    font.flavor = None  # a plain TrueType file
    font.save(pathlib.Path(__file__).parent / f"{FAMILY}-{style}.ttf")


if len(sys.argv) != 2:
    sys.exit(__doc__)
for style_name, style_weight in STYLES.items():
    convert(pathlib.Path(sys.argv[1]), style_name, style_weight)
