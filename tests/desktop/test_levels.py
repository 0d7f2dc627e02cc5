"""No level is lost: hardware that is slow, away, moved, or on a scale of its own, and ends that nobody orders."""

import signal
import threading
import time

import pytest

from desk import wait_until
from machine import Backlight, Logind, Monitors
from panel import PWM_SAFE, at


@pytest.fixture
def monitors(desk):
    return Monitors(desk, 2, value=70)


def start(panel, monitors):
    program = panel.start(**monitors.options)
    assert panel.reads(PWM_SAFE, "OFF")
    return program


def lock(panel, monitors):
    program = start(panel, monitors)
    panel.click(PWM_SAFE)
    assert panel.reads(PWM_SAFE, "ON")
    assert monitors.becomes(0, 100) and monitors.becomes(1, 100)
    return program


def switch_off(panel):
    panel.click(PWM_SAFE)
    assert panel.reads(PWM_SAFE, "OFF")


def can_be_switched(panel):
    return panel.find(PWM_SAFE, lambda one: one.is_("showing"))


def levels(desk):
    file = desk.folder / "state/noctra/own-levels"
    return file.read_text() if file.exists() else ""


def move(desk, monitors, monitor, output):
    desk.server.set_property(output, "EDID", (monitors.folder / str(monitor) / "edid").read_bytes())


@pytest.mark.parametrize("applies", ["at once", "at the end"])
@pytest.mark.parametrize("takes", [60, 250])
def test_a_slow_monitor_switched_on_and_at_once_off_again_gets_its_level_back(desk, panel, monitors, applies, takes):
    for number in (0, 1):
        monitors.set(number, "write-ms", takes)
        if applies == "at once":
            monitors.set(number, "applies-at-once", 1)
    program = start(panel, monitors)
    panel.hands.do("mousemove", *at(panel.place(PWM_SAFE), 0.5, 0.5), "click", "--repeat", 2, "--delay", 40, 1)
    assert wait_until(lambda: "PWM-Safe disabled - restored 2 display(s)" in program.messages())
    assert wait_until(lambda: not levels(desk))
    assert [monitors.value(0), monitors.value(1)] == [70, 70]
    panel.click(PWM_SAFE)
    time.sleep(0.12)
    assert desk.ends_cleanly(program)
    assert [monitors.value(0), monitors.value(1)] == [70, 70] and not levels(desk)


def test_a_backlight_that_counts_on_a_scale_of_its_own_stays_what_it_was(desk, panel):
    backlight = Backlight(desk, 36390)
    (backlight.device / "max_brightness").write_text("62451\n")
    backlight.stick_at(28064)
    logind = Logind(desk)
    logind.answer_brightness(
        "for name, share in (('brightness', 1), ('actual_brightness', 0.97)):\n"
        f"    with open('{backlight.device}/' + name, 'r+') as file:\n"
        "        file.write(str(int(args[2] * share)) + chr(10)); file.truncate()")
    program = panel.start(under=backlight.under)
    for _ in range(3):
        panel.click(PWM_SAFE)
        assert panel.reads(PWM_SAFE, "ON")
        assert backlight.becomes(62451)
        switch_off(panel)
        assert backlight.becomes(36390)
    assert desk.ends_cleanly(program)
    assert backlight.value == 36390


@pytest.mark.parametrize("trouble", ["unplugged", "asleep", "fails-writes", "fails-reads"])
def test_a_monitor_that_is_away_gets_its_level_back_once_it_answers(desk, panel, monitors, trouble):
    program = lock(panel, monitors)
    monitors.set(0, trouble, 1)
    switch_off(panel)
    assert monitors.becomes(1, 70)
    time.sleep(1)
    monitors.set(0, trouble, None)
    assert monitors.becomes(0, 70)
    panel.click(PWM_SAFE)
    assert monitors.becomes(0, 100)
    monitors.set(0, trouble, 1)
    threading.Timer(1, monitors.set, (0, trouble, None)).start()
    assert desk.ends_cleanly(program)
    assert [monitors.value(0), monitors.value(1)] == [70, 70] and not levels(desk)


def test_a_monitor_that_is_unplugged_while_the_mode_goes_off_gets_its_level_back_later(desk, panel, monitors):
    program = lock(panel, monitors)
    desk.server.unplug(1)
    monitors.set(1, "asleep", 1)
    assert program.says("disconnected")
    switch_off(panel)
    assert monitors.becomes(0, 70)
    assert " 70 100" in levels(desk)
    monitors.set(1, "asleep", None)
    desk.server.plug(1)
    assert monitors.becomes(1, 70)
    assert desk.ends_cleanly(program) and not levels(desk)


def test_a_level_goes_with_its_monitor_to_another_output(desk, panel, monitors):
    monitors.set(1, "value", 30)
    program = lock(panel, monitors)
    move(desk, monitors, 0, 1)
    move(desk, monitors, 1, 0)
    switch_off(panel)
    assert monitors.becomes(0, 70) and monitors.becomes(1, 30)
    assert program.ends(signal.SIGTERM) == 0  # the calibrations have moved, too
    assert [monitors.value(0), monitors.value(1)] == [70, 30]


def test_a_monitor_that_slept_while_another_was_looked_for_is_found_again(desk, panel, monitors):
    monitors.set(1, "asleep", 1)
    program = start(panel, monitors)
    assert wait_until(lambda: monitors.commands().count("redetect") >= 2)  # it has been given up
    monitors.set(1, "asleep", None)
    panel.dismiss()
    panel.show(program)
    assert wait_until(lambda: "read 1" in monitors.commands())
    panel.click(PWM_SAFE)
    assert monitors.becomes(0, 100) and monitors.becomes(1, 100)
    assert desk.ends_cleanly(program)
    assert [monitors.value(0), monitors.value(1)] == [70, 70]


def test_a_backlight_that_could_not_be_written_for_a_while_can_be_changed_again(desk, panel):
    backlight = Backlight(desk, 400)
    backlight.under[-2] = backlight.under[-2].replace(
        'exec "$@"', f'mount --bind -o ro {backlight.device}/brightness /sys/class/backlight/test_backlight/brightness'
        ' && mount -o remount,bind,ro /sys/class/backlight/test_backlight/brightness && exec "$@"')
    logind = Logind(desk)
    logind.answer_brightness("raise ValueError")
    program = panel.start(under=backlight.under)
    assert wait_until(lambda: logind.brightness_calls())
    assert wait_until(lambda: not can_be_switched(panel)), "nothing may write it"
    logind.obey(backlight)
    panel.dismiss()
    panel.show(program)
    panel.click(PWM_SAFE)
    assert panel.reads(PWM_SAFE, "ON")
    assert backlight.becomes(1000)
    logind.answer_brightness("raise ValueError")
    switch_off(panel)
    time.sleep(1)
    logind.obey(backlight)
    assert backlight.becomes(400)
    assert desk.ends_cleanly(program)


def test_a_level_that_is_lowered_again_and_again_by_hand_is_raised_each_time(desk, panel, monitors):
    program = lock(panel, monitors)
    for value in (60, 50):
        monitors.set(0, "value", value)
        assert monitors.becomes(0, 100)
        time.sleep(1.5)  # the check after it is over
    assert panel.reads(PWM_SAFE, "ON")
    assert not program.count("verify")
    switch_off(panel)
    assert monitors.becomes(0, 70)


def test_a_run_after_one_that_was_killed_puts_the_levels_back_before_anything_else(desk, panel, monitors):
    backlight = Backlight(desk, 400)
    monitors.options["under"] = [*backlight.under, *monitors.options["under"]]
    desk.server.set_property(0, "ConnectorType", None)  # the third display is the panel
    desk.server.set_property(2, "ConnectorType", "Panel")
    program = lock(panel, monitors)
    assert backlight.becomes(1000)
    program.kill()
    assert len(levels(desk).splitlines()) == 3
    assert (desk.folder / "state/noctra/own-levels").stat().st_mode & 0o777 == 0o600
    program = desk.start(**monitors.options)
    assert monitors.becomes(0, 70) and monitors.becomes(1, 70) and backlight.becomes(400)
    assert wait_until(lambda: not levels(desk))
    panel.show(program)
    assert panel.reads(PWM_SAFE, "ON")
    switch_off(panel)
    assert monitors.becomes(0, 70) and monitors.becomes(1, 70) and backlight.becomes(400)
    assert desk.ends_cleanly(program, signal.SIGINT)
