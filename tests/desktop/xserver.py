"""The X server of a test run: Xorg with the dummy driver, its outputs, and what they carry."""

import os
import pathlib
import signal
import subprocess
import sys
import tempfile

from Xlib import X, Xatom, display
from Xlib.ext import randr

from curve import calibration

CONFIGURATION = """
Section "Device"
    Identifier "card"
    Driver "dummy"
    VideoRam 256000
EndSection
Section "Monitor"
    Identifier "monitor"
    HorizSync 5-1000
    VertRefresh 5-200
EndSection
Section "Screen"
    Identifier "screen"
    Device "card"
    Monitor "monitor"
    DefaultDepth 24
    SubSection "Display"
        Depth 24
        Modes "640x480"
        Virtual 5760 1080
    EndSubSection
EndSection
"""
COLUMNS, WIDTH, HEIGHT = 8, 640, 480  # a grid in which all 16 outputs have room


class XServer:
    """Outputs are known by their number, CRTCs by their place in the server's list."""

    def __init__(self):
        self.folder = tempfile.TemporaryDirectory()
        configuration = pathlib.Path(self.folder.name, "xorg.conf")
        configuration.write_text(CONFIGURATION)
        reading, writing = os.pipe()
        # The server itself, not the wrapper in PATH: the wrapper asks for a console.
        self.process = subprocess.Popen(
            ["/usr/lib/xorg/Xorg", "-displayfd", str(writing), "-noreset", "-novtswitch", "-sharevts",
             "-config", configuration, "-logfile", configuration.with_name("log"), "-nolisten", "tcp"],
            pass_fds=[writing], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as numbers:
            self.display = ":" + numbers.readline().strip()
        assert self.display != ":", "the X server did not come up"
        self.connection = display.Display(self.display)
        self.root = self.connection.screen().root
        self.resources = randr.get_screen_resources_current(self.root)
        self.outputs, self.crtcs = self.resources.outputs, self.resources.crtcs
        self.set = set()  # the properties that tests have given to outputs
        self.of_the_server = set(self.root.list_properties())

    def end(self):
        self.process.kill()
        self.process.wait()
        self.folder.cleanup()

    def is_running(self):
        return self.process.poll() is None

    def stop(self):
        """Answers nobody until resume()."""
        self.process.send_signal(signal.SIGSTOP)

    def resume(self):
        self.process.send_signal(signal.SIGCONT)

    def reset(self, lit):
        """The first `lit` outputs are on, nothing is left of what an earlier test has set; returns the
        tables that every CRTC carries now, a calibration of its own each."""
        for output in range(len(self.outputs)):
            self.unplug(output)
        for output, name in list(self.set):
            self.set_property(output, name, None)
        for output in range(lit):
            self.plug(output)
        for name in set(self.root.list_properties()) - self.of_the_server:
            self.root.delete_property(name)  # a window manager's, a profile
        self.connection.set_input_focus(X.PointerRoot, X.RevertToPointerRoot, X.CurrentTime)
        self.write([calibration(self.entries(crtc), crtc) for crtc in range(len(self.crtcs))])
        return self.tables()

    def atom(self, name):
        return self.connection.intern_atom(name)

    def entries(self, crtc):
        return randr.get_crtc_gamma_size(self.connection, self.crtcs[crtc]).size

    def tables(self):
        """Of every CRTC: three lists of 16-bit levels."""
        answers = [randr.get_crtc_gamma(self.connection, crtc) for crtc in self.crtcs]
        return [[list(a.red), list(a.green), list(a.blue)] for a in answers]

    def write(self, tables):
        for crtc, levels in zip(self.crtcs, tables):
            randr.set_crtc_gamma(self.connection, crtc, len(levels[0]), *levels)
        self.connection.sync()

    def lit(self):
        """The CRTCs that drive an output."""
        return [number for number, crtc in enumerate(self.crtcs) if self.crtc_info(crtc).mode]

    def crtc_info(self, crtc):
        return randr.get_crtc_info(self.connection, crtc, X.CurrentTime)

    def info(self, output):
        return randr.get_output_info(self.connection, self.outputs[output], X.CurrentTime)

    def plug(self, output):
        info = self.info(output)
        if info.crtc:
            return
        self.announce_change(1000)
        mode = next(m.id for m in self.resources.modes if (m.width, m.height) == (WIDTH, HEIGHT))
        randr.add_output_mode(self.connection, self.outputs[output], mode)
        crtc = next(c for c in info.crtcs if not self.crtc_info(c).mode)
        at = output % COLUMNS * WIDTH, output // COLUMNS * HEIGHT
        self.configure(crtc, *at, mode, [self.outputs[output]])

    def unplug(self, output):
        if crtc := self.info(output).crtc:
            self.configure(crtc, 0, 0, 0, [])

    def configure(self, crtc, x, y, mode, outputs):
        answer = randr.set_crtc_config(self.connection, crtc, X.CurrentTime, x, y, mode,
                                       randr.Rotate_0, outputs)
        assert answer.status == 0, "the X server refused to configure an output"

    def announce_change(self, millimetres=1001):
        """An event for all who watch the screen; the displays stay as they are."""
        randr.set_screen_size(self.root, COLUMNS * WIDTH, 2 * HEIGHT, millimetres, millimetres)
        self.connection.sync()

    def set_property(self, output, name, value):
        """EDID: bytes; ConnectorType: a name such as "Panel"; None takes the property away."""
        where = self.connection, self.outputs[output], self.atom(name)
        if value is None:
            randr.delete_output_property(*where)
            self.set.discard((output, name))
            return
        self.set.add((output, name))
        if isinstance(value, bytes):
            randr.change_output_property(*where, Xatom.INTEGER, X.PropModeReplace, (8, value))
        else:
            randr.change_output_property(*where, Xatom.ATOM, X.PropModeReplace, (32, [self.atom(value)]))
        self.connection.sync()


def main(*command):
    """Runs a program on a server of its own with three displays."""
    server = XServer()
    try:
        server.reset(3)
        return subprocess.run(command, env={**os.environ, "DISPLAY": server.display}).returncode
    finally:
        server.end()


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
