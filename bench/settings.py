"""The settings of the programs that benchmarks compare."""

import os
import pathlib

NOCTRA = "[General]\nfilterIntensity=0.5\nhasShownFirstRunPopover=true\n"
# A place, so that nobody is asked for one, and one colour all day, there at once.
PEER = """[{section}]
location-provider=manual
adjustment-method=randr
temp-day=3500
temp-night=3500
fade=0
[manual]
lat=52.5
lon=13.4
"""


def write_settings():
    """Noctra's, redshift's and gammastep's."""
    for file, text in (("noctra/noctra.conf", NOCTRA),
                       ("redshift.conf", PEER.format(section="redshift")),
                       ("gammastep/config.ini", PEER.format(section="general"))):
        path = pathlib.Path(os.environ["XDG_CONFIG_HOME"], file)
        path.parent.mkdir(exist_ok=True)
        path.write_text(text)
