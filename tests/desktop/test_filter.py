"""What the displays carry while the filter is on, and after it."""

import pytest

from desk import wait_until


def test_later_starts_switch_the_filter_on_off_and_over(desk):
    program = desk.start()
    assert desk.is_untouched()
    for url, is_as_expected in (("noctra://on", desk.becomes_dimmed), ("noctra://off", desk.becomes_untouched),
                                ("noctra://toggle", desk.becomes_dimmed),
                                ("noctra://toggle", desk.becomes_untouched)):
        assert desk.launch(url).ends() == 0
        assert is_as_expected()
    assert desk.ends_cleanly(program)


@pytest.mark.parametrize("preferences, filter", [
    ({"filterIntensity": 0.5, "filterBrightness": 0.6}, (0.5, 0.6)),
    ({"filterIntensity": 0.3, "filterBrightness": 1}, (0.3, 1)),
    ({"filterIntensity": 0.9, "filterBrightness": 0.05}, (0.9, 0.1)),
    ({"filterIntensity": 1, "filterBrightness": 0, "allowExtremeDim": "true"}, (1, 0)),
    ({"filterIntensity": "nan", "filterBrightness": "nan"}, (0, 1))])
def test_the_filter_is_what_the_preferences_say_within_their_bounds(desk, preferences, filter):
    desk.prefer(**preferences)
    program = desk.start()
    desk.command(program, "noctra://on")
    assert desk.is_dimmed(*filter)
    desk.command(program, "noctra://off")
    assert desk.is_untouched()
    desk.command(program, "noctra://on")
    assert desk.ends_cleanly(program)


def test_the_filter_is_kept_in_the_preferences_and_still_starts_off(desk):
    def says(text):
        return wait_until(lambda: text in desk.preferences.read_text())

    program = desk.start_dimmed()
    assert says("filterEnabled=true")
    assert desk.ends_cleanly(program)
    program = desk.start()
    assert desk.is_untouched()
    assert says("filterEnabled=false")
    desk.command(program, "noctra://on")
    assert desk.is_dimmed()
