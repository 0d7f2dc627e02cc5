"""PWM-safe mode, switched on at the panel: backlights and monitors at full power, and back."""

import signal
import time

import pytest

from desk import wait_until
from machine import Backlight, Logind, Monitors
from panel import PWM_SAFE, WARMTH, at

SEVERE = "DISPLAY BRIGHTNESS LOW —\nNOCTRA CANNOT REDUCE PWM HERE"


@pytest.fixture
def backlight(desk):
    return Backlight(desk, 400)


def start_locked(panel, backlight):
    program = panel.start(under=backlight.under)
    panel.click(PWM_SAFE)
    assert panel.reads(PWM_SAFE, "ON")
    assert backlight.becomes(1000)
    return program


def test_a_click_on_the_bar_switches_the_mode_through_its_states(desk, panel, backlight):
    program = panel.start(under=backlight.under)
    assert panel.reads(PWM_SAFE, "OFF")
    panel.click(PWM_SAFE)
    assert panel.reads(PWM_SAFE, "...") and panel.reads(PWM_SAFE, "ON")
    assert backlight.becomes(1000)
    backlight.set(500)
    assert backlight.becomes(1000)
    panel.click(PWM_SAFE)
    assert panel.reads(PWM_SAFE, "OFF")
    assert backlight.becomes(400)

    backlight.stick_at(400)
    panel.click(PWM_SAFE)
    assert panel.reads(PWM_SAFE, "...") and panel.reads(PWM_SAFE, "OFF")
    assert desk.ends_cleanly(program)
    assert backlight.value == 400
    assert "pwmSafeMode=false" in desk.preferences.read_text()


@pytest.mark.parametrize("number", [signal.SIGTERM, signal.SIGINT, signal.SIGHUP])
def test_every_way_out_puts_the_backlight_and_the_tables_back(desk, panel, backlight, number):
    program = start_locked(panel, backlight)
    desk.command(program, "noctra://on")
    assert desk.ends_cleanly(program, number)
    assert backlight.value == 400


@pytest.mark.parametrize("trouble, status", [("hangs", 0), ("dies", 1)])
def test_the_backlight_goes_back_where_the_x_server_is_in_trouble(desk, panel, backlight, trouble, status):
    program = start_locked(panel, backlight)
    panel.hands.move(*panel.place(WARMTH)[:2])
    panel.hands.do("mousedown", 1)
    if trouble == "dies":
        desk.server.process.kill()
    else:
        desk.server.stop()
        program.signal(signal.SIGTERM)
    assert program.ends() == status
    assert backlight.value == 400


def test_the_mode_comes_back_with_the_next_start_once_the_panel_is_shown(desk, panel, backlight):
    assert desk.ends_cleanly(start_locked(panel, backlight))
    program = desk.start(under=backlight.under)
    desk.command(program, "noctra://on")
    assert backlight.value == 400
    panel.show(program)
    assert panel.reads(PWM_SAFE, "ON")
    assert backlight.becomes(1000)
    assert desk.ends_cleanly(program)
    assert backlight.value == 400


def test_logind_is_asked_to_write(desk, panel, backlight):
    logind = Logind(desk)
    logind.obey(backlight)
    program = start_locked(panel, backlight)
    assert {call[:2] for call in logind.brightness_calls()} == {("backlight", "test_backlight")}
    assert logind.brightness_calls()[-1][2] == 1000
    assert desk.ends_cleanly(program)
    assert logind.brightness_calls()[-1][2] == 400


def test_monitors_are_held_at_full_power_and_put_back(desk, panel):
    monitors = Monitors(desk, 2, value=40)
    program = panel.start(**monitors.options)
    panel.click(PWM_SAFE)
    waits = []

    def is_on():
        began = time.monotonic()
        desk.open("noctra://off")
        waits.append(time.monotonic() - began)
        return panel.find(PWM_SAFE, lambda one: one.description == "ON")
    assert wait_until(is_on)
    assert max(waits) < 1, "the program waits for a monitor"
    assert monitors.becomes(0, 100) and monitors.becomes(1, 100)
    assert desk.ends_cleanly(program)
    assert [monitors.value(0), monitors.value(1)] == [40, 40]
    assert monitors.commands().count("write 1 40") == 1


def test_a_low_backlight_that_cannot_be_set_is_warned_of(desk, panel, backlight):
    desk.take_away("libnoctra-displayservices.so")
    program = panel.start(under=backlight.under)
    corner = at(panel.place("NOCTRA"), 0.5, 0.01)
    panel.hands.move(*corner)
    x, y, width, height = panel.place(SEVERE)
    arrow = panel.cursor()
    panel.hands.move(x + width // 2, y + height // 2)
    assert wait_until(lambda: panel.cursor() != arrow), "no hand over the warning"
    above = (x, y - 150, width, 150)
    assert wait_until(lambda: panel.count_pixels(above, 0xFFD60A) > 100), "no tooltip"
    panel.hands.move(*corner)
    assert wait_until(lambda: panel.cursor() == arrow)
    assert wait_until(lambda: not panel.count_pixels(above, 0xFFD60A))
    backlight.set(850)
    assert panel.becomes("KEEP MONITOR AT 100%\nAND THEN DIM HERE", lambda one: one.is_("showing"))
    assert desk.ends_cleanly(program)
    assert backlight.value == 850


def test_the_librarys_weight_comes_with_its_first_use_only(desk, backlight):
    program = desk.start(under=backlight.under)
    desk.command(program, "noctra://on")
    with open(f"/proc/{program.child.pid}/maps") as maps:
        mapped = maps.read()
    assert "/noctra" in mapped and "displayservices" not in mapped and "ddcutil" not in mapped
    assert desk.ends_cleanly(program)
