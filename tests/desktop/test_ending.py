"""Every way out puts the displays back."""

import fcntl
import os
import pty
import signal

import pytest

from desk import PATIENCE, SANITIZED

# The program must be gone 2 s after a signal, whatever the X server does; the rest is for a test machine
# that is busy with something else.
LONGEST_END = PATIENCE if SANITIZED else 2.3
RECEIVED = "Automation URL received"


@pytest.mark.parametrize("number, message", [
    (signal.SIGINT, "SIGINT received - restoring gamma"), (signal.SIGTERM, "SIGTERM received - restoring gamma"),
    (signal.SIGHUP, "App terminating - restoring gamma")])
def test_a_signal_restores_every_display(desk, number, message):
    program = desk.start_dimmed()
    assert desk.ends_cleanly(program, number)
    assert message in program.messages()
    assert not program.errors


def test_a_signal_in_the_middle_of_the_restore_does_not_disturb_it(desk):
    program = desk.start_dimmed()
    desk.server.stop()
    program.signal(signal.SIGTERM)
    assert program.says("SIGTERM received - restoring gamma")
    for number in signal.SIGINT, signal.SIGTERM, signal.SIGHUP:
        program.signal(number)
    desk.server.resume()
    assert program.ends() == 0
    assert desk.is_untouched()


def test_a_command_does_not_overtake_the_restore(desk):
    overtaking = 0
    for _ in range(8):
        program = desk.start_dimmed()
        received = program.count(RECEIVED)
        desk.server.stop()
        program.signal(signal.SIGTERM)
        assert program.says("SIGTERM received - restoring gamma")
        desk.open("noctra://on", "noctra://on", "noctra://on", wait=False)
        # Now and then the main thread waits for the server itself; the way out waits 1.6 s for it.
        overtaking += program.says(RECEIVED, received + 1, patience=0.8)
        desk.server.resume()
        assert program.ends() == 0
        assert desk.is_untouched()
    assert overtaking > 0


@pytest.mark.parametrize("number", [signal.SIGINT, signal.SIGTERM, signal.SIGHUP])
def test_a_hung_server_does_not_hold_the_end_up(desk, number):
    program = desk.start_dimmed()
    desk.server.stop()
    received = program.count(RECEIVED)
    desk.open("noctra://off", "noctra://on", "noctra://off", wait=False)
    assert program.says(RECEIVED, received + 1)
    assert program.ends(number, LONGEST_END) == 0
    desk.server.resume()
    # What the server did with the last words of a client that had gone is its own affair; the next start
    # knows the tables either way.
    program = desk.start()
    assert desk.is_untouched()
    assert desk.ends_cleanly(program)


def test_the_end_of_the_x_server_ends_the_program_in_good_order(desk):
    program = desk.start_dimmed()
    desk.server.process.kill()
    assert program.ends() == 1
    assert program.errors


def test_without_the_session_bus_displays_are_still_restored(desk):
    program = desk.start_dimmed()
    desk.bus.kill()
    assert program.says("session bus went away")
    assert desk.is_dimmed()
    assert desk.ends_cleanly(program)


@pytest.mark.parametrize("reader", ["never reads", "is a stuck terminal", "has gone"])
def test_a_reader_of_the_log_does_not_hold_the_end_up(desk, reader):
    reading, writing = pty.openpty() if reader == "is a stuck terminal" else os.pipe()
    if reader == "has gone":
        os.close(reading)
    program = desk.launch("noctra://on", stdout=writing)
    assert desk.becomes_dimmed()
    if reader == "never reads":
        # Opened anew: the program shares the flags of the end that it was given.
        end = os.open(f"/proc/self/fd/{writing}", os.O_WRONLY | os.O_NONBLOCK)
        for size in fcntl.fcntl(writing, fcntl.F_GETPIPE_SZ), 1:
            try:
                while os.write(end, b"." * size):
                    pass
            except BlockingIOError:
                pass
    for _ in range(30):  # far more lines than a terminal's buffer holds, and than are kept for the reader
        desk.open(*["noctra://off", "noctra://on"] * 20)
    assert desk.becomes_dimmed()
    assert program.ends(signal.SIGTERM, LONGEST_END) == 0
    assert desk.is_untouched()


def test_a_signal_that_means_nothing_to_it_ends_it_as_it_does_any_program(desk):
    assert desk.start().ends(signal.SIGRTMIN) == -signal.SIGRTMIN
