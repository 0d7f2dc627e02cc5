"""PWM-safe mode, switched on at the panel: backlights and monitors at full power, and back."""

from machine import Backlight, Monitors
from panel import PWM_SAFE


def test_the_backlight_is_held_at_full_power_and_put_back(desk, panel):
    backlight = Backlight(desk, 400)
    program = panel.start(under=backlight.under)
    assert panel.reads(PWM_SAFE, "OFF")
    panel.click(PWM_SAFE)
    assert panel.reads(PWM_SAFE, "ON")
    assert backlight.value == 1000
    assert desk.ends_cleanly(program)
    assert backlight.value == 400


def test_monitors_are_held_at_full_power_and_put_back(desk, panel):
    monitors = Monitors(desk, 2, value=40)
    program = panel.start(**monitors.options)
    assert panel.reads(PWM_SAFE, "OFF")
    panel.click(PWM_SAFE)
    assert panel.reads(PWM_SAFE, "ON")
    assert [monitors.value(0), monitors.value(1)] == [100, 100]
    assert desk.ends_cleanly(program)
    assert [monitors.value(0), monitors.value(1)] == [40, 40]
    assert sorted(monitors.commands()).count("write 1 40") == 1
