"""Copied diagnostics outlive the program where the desktop has a clipboard manager."""

import signal
import threading
import time

import pytest
from Xlib import X, display
from Xlib.protocol import event

from desk import PATIENCE, SANITIZED
from panel import COPY, STOP

HEADER = "=== Noctra Debug Log ==="


class ClipboardManager(threading.Thread):
    """Asks the clipboard's owner for its text when it is told to save it (SAVE_TARGETS); in a `with`."""

    def __init__(self, server, answers=True):
        super().__init__()
        self.answers, self.asked, self.saved = answers, threading.Event(), None
        self.connection = display.Display(server.display)
        self.atom = self.connection.intern_atom
        self.window = self.connection.screen().root.create_window(0, 0, 1, 1, 0, X.CopyFromParent)
        self.window.set_selection_owner(self.atom("CLIPBOARD_MANAGER"), X.CurrentTime)
        self.connection.sync()
        self.ended = False

    def __enter__(self):
        self.start()
        return self

    def __exit__(self, *_):
        self.ended = True
        self.join()
        self.connection.close()

    def run(self):
        while not self.ended:
            if not self.connection.pending_events():
                time.sleep(0.002)
                continue
            one = self.connection.next_event()
            if one.type == X.SelectionRequest and one.target == self.atom("SAVE_TARGETS"):
                request = one
                self.asked.set()
                if self.answers:
                    self.window.convert_selection(self.atom("CLIPBOARD"), self.atom("UTF8_STRING"),
                                                  self.atom("SAVED"), X.CurrentTime)
            elif one.type == X.SelectionNotify:
                text = self.window.get_full_property(self.atom("SAVED"), X.AnyPropertyType)
                self.saved = text and text.value.decode()
                request.requestor.send_event(event.SelectionNotify(
                    time=request.time, requestor=request.requestor, selection=request.selection,
                    target=request.target, property=request.property))
            self.connection.flush()


@pytest.fixture
def copied(desk, panel):
    """The program after a copy, dimmed and with its settings open."""
    program = panel.start()
    desk.command(program, "noctra://on")
    panel.open_settings()
    panel.click(COPY)
    assert program.says("Debug log copied to clipboard")
    return program


def test_the_manager_takes_them_over_at_the_emergency_stop(desk, panel, copied):
    with ClipboardManager(desk.server) as manager:
        panel.click(STOP)
        assert copied.ends() == 0
        assert desk.is_untouched()
        assert manager.saved.startswith(HEADER)


def test_a_manager_that_does_not_answer_holds_nobody_up(desk, panel, copied):
    with ClipboardManager(desk.server, answers=False) as manager:
        panel.click(STOP)
        assert manager.asked.wait(PATIENCE)
        assert desk.is_untouched()  # the displays come first
        assert copied.ends(patience=PATIENCE if SANITIZED else 1) == 0


def test_after_a_signal_nobody_is_asked(desk, copied):
    with ClipboardManager(desk.server) as manager:
        assert desk.ends_cleanly(copied, signal.SIGTERM)
        assert not manager.asked.is_set()
