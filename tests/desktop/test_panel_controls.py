"""The panel worked with the mouse: what the displays carry, and what the controls then say."""

from panel import BRIGHTNESS, POWER, WARMTH


def test_faders_and_the_power_switch_reach_the_displays(desk, panel):
    program = panel.start()
    assert desk.is_untouched()
    panel.click(POWER)
    assert desk.becomes_dimmed()
    assert panel.becomes(POWER, lambda one: one.is_("checked"))

    panel.drag(WARMTH, up=True)
    assert desk.becomes_dimmed(1, 0.6)
    assert panel.reads(WARMTH, "0K")
    panel.drag(BRIGHTNESS, up=False)
    assert desk.becomes_dimmed(1, 0.1)
    assert panel.reads(BRIGHTNESS, "10%")
    panel.drag(WARMTH, up=False)
    assert desk.becomes_dimmed(0, 0.1)
    assert panel.reads(WARMTH, "6,500K")

    panel.click(POWER)
    assert desk.becomes_untouched()
    assert panel.becomes(POWER, lambda one: not one.is_("checked"))
    panel.drag(BRIGHTNESS, up=True)
    assert panel.reads(BRIGHTNESS, "100%")
    assert desk.is_untouched()
    panel.drag(BRIGHTNESS, up=False)
    assert panel.reads(BRIGHTNESS, "10%")
    panel.click(POWER)
    assert desk.becomes_dimmed(0, 0.1)
    assert desk.ends_cleanly(program)
