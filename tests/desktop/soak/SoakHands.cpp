// A person at the panel.

#include <array>

#include "tests/desktop/soak/Soak.h"

namespace noctra::desktop {

/// Where the controls are, from those who cannot see: later there may be nobody to ask.
void Soak::learnThePanel() {
    const std::unique_ptr<Program> program = startWithPanel();
    const Box panel = panelExtents();
    panelSize_ = {0, 0, panel.width, panel.height};
    const auto learn = [&](const char* name) {
        const Box box = control(name).extents();
        controls_[name] = {box.x - panel.x, box.y - panel.y, box.width, box.height};
    };
    for (const char* name : {controls::gear, controls::warmth, controls::brightness, controls::day,
                             controls::evening, controls::night, controls::power})
        learn(name);
    openSettings();
    for (const char* name : {controls::close, controls::launchAtLogin, controls::allowExtremeDim})
        learn(name);
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

std::optional<Box> Soak::onPanel(const std::string& control) {
    if (!plugged_.contains(0))
        plug(0, true);
    if (!windows().placeOf(panelTitle)) {
        awaitProgramOnBus();
        commands_->openWithoutWaiting({"noctra://show"});
        pollUntil(Duration(3000), [&] { return windows().placeOf(panelTitle).has_value(); });
    }
    const auto place = windows().placeOf(panelTitle);
    if (!place || place->width != panelSize_.width || place->height != panelSize_.height) {
        note("(no room for the panel)");
        hands().type({"Escape"});
        setMode(0, "800x600");
        return std::nullopt;
    }
    note(control);
    const Box& box = controls_.at(control);
    return Box{place->x + box.x, place->y + box.y, box.width, box.height};
}

void Soak::play(const InputDevices::Commands& commands) {
    hands().perform(commands);
    model_.handled = true;
    model_.anyFilter();
    // What was pressed may have covered what was meant: the settings' other switches, the stop.
    model_.login.reset();
    model_.mayEndByHand = true;
}

void Soak::drag() {
    if (const auto fader = onPanel(chance.of(std::array{controls::warmth, controls::brightness})))
        play(InputDevices::dragging(chance.in(*fader), chance.in(*fader)));
}

void Soak::turnTheWheel() {
    const auto fader = onPanel(chance.of(std::array{controls::warmth, controls::brightness}));
    if (!fader)
        return;
    InputDevices::Commands commands = InputDevices::moving(chance.in(*fader));
    const auto turns = InputDevices::turning(chance.below(13) - 6);
    commands.insert(commands.end(), turns.begin(), turns.end());
    play(commands);
}

void Soak::click(const char* control) {
    const auto box = onPanel(control);
    if (!box)
        return;
    InputDevices::Commands commands = InputDevices::moving(chance.in(*box));
    commands.insert(commands.end(), {"click", "--delay", "0", "1"});
    play(commands);
}

void Soak::press() {
    click(
        chance.of(std::array{controls::day, controls::evening, controls::night, controls::power}));
}

void Soak::useTheSettings() {
    click(controls::gear);
    click(chance.of(std::array{controls::launchAtLogin, controls::allowExtremeDim}));
    click(controls::close);
}

void Soak::closePanel() {
    hands().type({"Escape"});
}

} // namespace noctra::desktop
