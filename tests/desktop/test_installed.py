"""The program as it is installed: what lies where, and the ways in which a desktop starts it."""

import pathlib
import subprocess

import dbus
import pytest

from desk import BUILD, NAME, PATIENCE, wait_until

FILES = """bin/noctra
share/applications/org.noctra.Noctra.desktop share/dbus-1/services/org.noctra.Noctra.service
share/icons/hicolor/128x128/apps/org.noctra.Noctra.png share/icons/hicolor/256x256/apps/org.noctra.Noctra.png
share/icons/hicolor/48x48/apps/org.noctra.Noctra.png share/icons/hicolor/scalable/apps/org.noctra.Noctra.svg
share/icons/hicolor/symbolic/apps/org.noctra.Noctra-symbolic.svg share/man/man1/noctra.1.gz
share/metainfo/org.noctra.Noctra.metainfo.xml share/noctra/fonts/Anybody-Bold.ttf
share/noctra/fonts/OFL.txt share/noctra/icons/active.pdf share/noctra/icons/off.pdf""".split()
ENTRY, SERVICE = FILES[1], FILES[2]
ROOT = pathlib.Path(__file__).parents[2]


class Installed:
    """A session that finds the program in a folder into which it has just been installed."""

    def __init__(self, desk, folder):
        self.desk, self.prefix = desk, desk.folder / folder
        self.run("cmake", "--install", BUILD, "--prefix", self.prefix)
        self.libraries = {path.name: path for path in self.prefix.rglob("libnoctra-*.so")}
        desk.environment["PATH"] = f"{self.prefix}/bin:/usr/bin:/bin"
        desk.environment["XDG_DATA_DIRS"] = f"{self.prefix}/share:/usr/share"

    def run(self, *command):
        process = self.desk.run(*command)
        assert process.ends(patience=2 * PATIENCE) == 0, process.lines + process.errors

    def read(self, file):
        return (self.prefix / file).read_text()

    def process(self):
        """What has the name on the session bus; 0: nobody."""
        try:
            return int(self.desk.bus.client().call_blocking(
                "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                "GetConnectionUnixProcessID", "s", (NAME,)))
        except dbus.DBusException:
            return 0

    def end(self):
        pid = self.process()
        subprocess.run(["kill", str(pid)], check=True)
        assert wait_until(lambda: not self.process())


@pytest.fixture
def installed(desk):
    return Installed(desk, "prefix")


def test_every_file_is_there_and_valid(installed):
    assert set(installed.libraries) == {"libnoctra-panel.so", "libnoctra-displayservices.so"}
    for file in FILES:
        assert (installed.prefix / file).is_file(), file
    installed.run("desktop-file-validate", installed.prefix / ENTRY)
    # AppStream before 1.0 does not know the tag 'developer', which its successors ask for.
    installed.run("appstreamcli", "validate", "--no-net", "--strict", "--override=unknown-tag=pedantic",
                  installed.prefix / "share/metainfo/org.noctra.Noctra.metainfo.xml")
    installed.run(ROOT / "scripts/check-hardening", "--links-only", installed.prefix / FILES[0],
                  *installed.libraries.values())
    assert f"\nExec={installed.prefix}/bin/noctra %U\n" in installed.read(ENTRY)


def test_under_a_folder_with_a_space_in_its_name_the_entries_are_still_valid(desk):
    installed = Installed(desk, "of mine")
    installed.run("desktop-file-validate", installed.prefix / ENTRY)
    assert f'\nExec="{installed.prefix}/bin/noctra" %U\n' in installed.read(ENTRY)
    assert f'\nExec="{installed.prefix}/bin/noctra"\n' in installed.read(SERVICE)


def test_the_bus_starts_it_for_a_call_and_it_mends_its_autostart_entry(desk, installed):
    entry = desk.folder / "config/autostart/org.noctra.Noctra.desktop"
    entry.parent.mkdir()
    entry.write_text("[Desktop Entry]\nType=Application\nName=Noctra\nExec=/gone/noctra\n")
    desk.bus.start(f"<servicedir>{installed.prefix}/share/dbus-1/services</servicedir>",
                   environment=desk.environment)
    desk.open(method="Activate")
    process = pathlib.Path(f"/proc/{installed.process()}")
    assert process.joinpath("exe").resolve() == installed.prefix / "bin/noctra"
    for file in installed.libraries["libnoctra-panel.so"], installed.prefix / FILES[10]:  # once text is drawn
        assert wait_until(lambda: f"{file}\n" in process.joinpath("maps").read_text()), file
    assert f"\nExec={installed.prefix}/bin/noctra\n" in entry.read_text()
    installed.end()


def test_a_link_starts_it_and_the_next_one_reaches_it(desk, installed):
    installed.run("update-desktop-database", installed.prefix / "share/applications")
    first = desk.run("xdg-open", "noctra://toggle")  # runs as long as the program
    assert desk.becomes_dimmed()
    installed.run("xdg-open", "noctra://toggle")
    assert desk.becomes_untouched()
    assert first.says("Automation command applied: toggle", 2)
    installed.end()
    assert first.ends() == 0
