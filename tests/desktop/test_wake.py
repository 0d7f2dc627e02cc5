"""What the program does after the machine has slept, as logind tells it."""

import socket
import time

import dbus.lowlevel

from desk import wait_until
from machine import MANAGER, Logind

REFRESH, WOKE = "Refreshing displays (wake from sleep)", "System woke from sleep"
UNNOTICED = "ERROR: Wake from sleep cannot be noticed: "


def test_a_wake_puts_the_filter_on_again_where_the_driver_has_taken_it_off(desk):
    logind = Logind(desk)
    program = desk.start_dimmed()
    desk.server.write(desk.before)
    logind.sleep_and_wake()
    assert program.says(REFRESH)
    assert program.says("Display settle pass reapply")
    assert desk.is_dimmed()
    assert program.count(WOKE) == 1

    desk.command(program, "noctra://off")
    logind.sleep_and_wake()
    assert program.says(WOKE, 2)
    desk.command(program, "noctra://off")
    assert program.count(REFRESH) == 1
    assert desk.ends_cleanly(program)


def test_each_wake_counts_once_whoever_logind_is_and_nobody_elses_word(desk):
    logind = Logind(desk)
    program = desk.start()
    logind.sleep_and_wake()
    assert program.says(WOKE)
    logind.process.kill()
    logind = Logind(desk, start_bus=False)  # a new owner of the name
    stranger = desk.system_bus.client()
    signal = dbus.lowlevel.SignalMessage(MANAGER, "org.freedesktop.login1.Manager", "PrepareForSleep")
    signal.append(False, signature="b")
    stranger.send_message(signal)
    stranger.flush()
    logind.sleep_and_wake()
    assert program.says(WOKE, 2)
    logind.sleep_and_wake()
    assert program.says(WOKE, 3)
    assert program.count(WOKE) == 3 and program.count(UNNOTICED) == 0


def test_a_system_bus_that_comes_dies_and_comes_back_is_said_once_each_time(desk):
    program = desk.start()
    assert program.says(UNNOTICED + "no system bus (No such file or directory)")
    for deaths in range(2):
        logind = Logind(desk)
        logind.sleep_and_wake()
        assert program.says(WOKE, deaths + 1)
        desk.system_bus.kill()
        assert program.says(UNNOTICED + "the system bus went away", deaths + 1)
    assert program.count(UNNOTICED) == 3


def test_a_system_bus_that_never_answers_holds_nobody_up(desk):
    with socket.socket(socket.AF_UNIX) as mute:
        mute.bind(str(desk.system_bus.socket))
        mute.listen()
        program = desk.start()
        slowest = 0

        def is_said():
            nonlocal slowest
            began = time.monotonic()
            desk.open("noctra://on")
            slowest = max(slowest, time.monotonic() - began)
            return program.count(UNNOTICED + "no system bus (it does not answer)")
        assert wait_until(is_said)
        assert slowest < 0.5
        assert desk.ends_cleanly(program, patience=5)
