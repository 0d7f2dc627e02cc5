"""The panel worked with the mouse and through assistive technology: what the displays carry, and what the
controls then say."""

import pytest

from desk import wait_until
from panel import (ALLOW_EXTREME_DIM, BRIGHTNESS, CLOSE, COPY, GEAR, LAUNCH_AT_LOGIN, POWER, PWM_SAFE, SHEET,
                   STOP, WARMTH)

EVENING = 1 - 2700 / 6500, 0.85


def checked(one):
    return one.is_("checked")


def unchecked(one):
    return not one.is_("checked")


def test_faders_and_the_power_switch_reach_the_displays(desk, panel):
    program = panel.start()
    assert desk.is_untouched()
    panel.click(POWER)
    assert desk.becomes_dimmed()
    assert panel.becomes(POWER, checked)

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
    assert panel.becomes(POWER, unchecked)
    panel.drag(BRIGHTNESS, up=True)
    assert panel.reads(BRIGHTNESS, "100%")
    assert desk.is_untouched()
    panel.drag(BRIGHTNESS, up=False)
    assert panel.reads(BRIGHTNESS, "10%")
    panel.click(POWER)
    assert desk.becomes_dimmed(0, 0.1)
    assert desk.ends_cleanly(program)


def test_it_closes_without_the_filter_and_comes_back_with_the_same_values(desk, panel):
    program = panel.start()
    panel.click("EVENING")
    assert desk.becomes_dimmed(*EVENING)
    panel.hands.type("Escape")
    assert panel.goes()
    assert desk.is_dimmed(*EVENING)
    desk.command(program, "noctra://off")
    assert desk.is_untouched()
    panel.show(program)
    assert panel.reads(WARMTH, "2,700K") and panel.reads(BRIGHTNESS, "85%")
    assert unchecked(panel.control(POWER))
    panel.hands.ask_to_close()
    assert panel.goes()
    assert desk.ends_cleanly(program)


def test_a_panel_that_cannot_be_drawn_is_said_and_nothing_else_changes(desk, panel):
    desk.take_away("libnoctra-panel.so")
    program = desk.start_dimmed()
    desk.command(program, "noctra://show")
    assert any(message.startswith("ERROR: The panel cannot be shown: ") and "libnoctra-panel.so" in message
               for message in program.messages())
    assert not panel.hands.windows()
    assert desk.is_dimmed()
    assert desk.ends_cleanly(program)


def test_every_control_says_what_it_is_and_how_it_stands(desk, panel):
    desk.prefer(filterIntensity=1 - 4000 / 6500, filterBrightness=0.75, allowExtremeDim="true")
    panel.start()

    def expect(*controls):
        for name, role, description, is_checked in controls:
            one = panel.control(name)
            assert (one.role, one.description, one.is_("checked"), one.is_("focusable"), one.is_("showing")) == (
                role, description, is_checked, True, True), name

    expect((GEAR, "push button", "", False), (WARMTH, "slider", "4,000K", False),
           (BRIGHTNESS, "slider", "75%", False), ("DAY", "push button", "", True),
           ("EVENING", "push button", "", False), ("NIGHT", "push button", "", False),
           (POWER, "check box", "", False))
    brightness = panel.control(BRIGHTNESS)
    assert [brightness.value(which) for which in ("MinimumValue", "MaximumValue", "CurrentValue")] == [0, 1, 0.75]
    assert not panel.control(PWM_SAFE).is_("showing")
    panel.open_settings()
    assert panel.control(SHEET).role == "dialog"
    expect((CLOSE, "push button", "", False), (LAUNCH_AT_LOGIN, "check box", "", False),
           (ALLOW_EXTREME_DIM, "check box", "", True), (COPY, "push button", "", False),
           (STOP, "push button", "", False))


def test_assistive_technology_works_the_controls(desk, panel):
    program = panel.start()
    panel.control("EVENING").perform("Press")
    assert desk.becomes_dimmed(*EVENING)
    panel.control(WARMTH).set_value(0.25)
    assert desk.becomes_dimmed(0.25, 0.85)
    panel.control(BRIGHTNESS).set_value(0.05)
    assert desk.becomes_dimmed(0.25, 0.1)  # not below the fader's end
    panel.control(POWER).perform("Toggle")
    assert desk.becomes_untouched()
    panel.control(GEAR).perform("Press")
    panel.control(ALLOW_EXTREME_DIM).perform("Toggle")
    panel.control(CLOSE).perform("Press")
    assert panel.becomes(BRIGHTNESS, lambda one: one.value("MinimumValue") == 0)
    panel.control(GEAR).perform("Press")
    panel.control(STOP).perform("Press")
    assert program.ends() == 0


def test_diagnostics_are_copied_as_they_stood_before(desk, panel):
    program = panel.start()
    panel.open_settings()
    for earlier in range(2):
        panel.click(COPY)
        assert program.says("Debug log copied to clipboard", earlier + 1)
        assert panel.becomes("COPIED DIAGNOSTICS", lambda one: True)
        reader = desk.run("xclip", "-selection", "clipboard", "-o")
        assert reader.ends() == 0
        assert reader.lines[0] == "=== Noctra Debug Log ==="
        assert reader.count("App launched successfully") == 1
        assert reader.count("Debug log copied to clipboard") == earlier
        panel.control(COPY)  # the confirmation goes
    assert desk.ends_cleanly(program)


def test_launch_at_login_is_a_switch_for_the_autostart_entry(desk, panel):
    entry = desk.folder / "config/autostart/org.noctra.Noctra.desktop"
    program = panel.start()
    panel.open_settings()
    for on in True, False:
        panel.click(LAUNCH_AT_LOGIN)
        assert wait_until(lambda: entry.exists() == on)
        assert panel.becomes(LAUNCH_AT_LOGIN, checked if on else unchecked)
    assert desk.ends_cleanly(program)


@pytest.mark.parametrize("animations", [0, 1])
def test_the_sheet_is_in_its_place_at_once_where_the_desktop_asks_for_less_motion(desk, panel, animations):
    manager = panel.settings_manager(b"Gtk/EnableAnimations", animations)
    panel.start()
    top = panel.control("NOCTRA").box[1] + 1  # the window's edge
    panel.click(GEAR)
    sheet = panel.control(SHEET)
    way = []
    assert wait_until(lambda: way.append(sheet.box[1] - top) or way[-1] == 0)
    assert (max(map(abs, way)) > 0) == bool(animations)
    panel.close_settings()
    manager.close()
