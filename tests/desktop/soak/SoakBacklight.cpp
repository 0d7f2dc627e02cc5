// The built-in panel's backlight, and PWM-safe mode.

#include "tests/desktop/soak/Soak.h"

namespace noctra::desktop {

namespace {

constexpr int fullLevel = 1000;

} // namespace

/// The mode came on while the level could not be read: it is neither held nor known until it can.
bool Soak::levelIsUnknown() const {
    std::string last;
    for (const std::string& line : program_->messages())
        if (line.starts_with("PWM-Safe enabled"))
            last = line;
    return last.find("locked 0 ") != std::string::npos;
}

void Soak::setBacklight() {
    const int level = 100 * (1 + chance.below(9));
    note(std::to_string(level));
    backlight_->set(level);
    const bool alone = model_.backlightEvents++ == 0;
    if (alone && model_.locked == std::set{false})
        model_.levels = {level};
    else if (!alone || model_.locked != std::set{true} || levelIsUnknown())
        model_.levels.insert(level);
    if (model_.locked.contains(true))
        model_.anyMode(); // it may be checking just now, and then gives up
}

/// Until the round is over.
void Soak::breakBacklight() {
    backlight_->setFailing(true);
    const bool alone = model_.backlightEvents++ == 0;
    if (alone && model_.locked == std::set{false})
        return;
    model_.levels.insert(fullLevel); // it may just have been on its way back
    if (model_.locked.contains(true))
        model_.anyMode();
}

void Soak::switchPwmSafe() {
    const bool on = chance.once(2);
    note(on ? "on" : "off");
    program_->type(on ? "pwm on" : "pwm off");
    const bool alone = model_.backlightEvents++ == 0;
    model_.locked = {on};
    if (!alone || !model_.builtInLit)
        model_.anyMode();
    if (!alone)
        model_.levels.insert(fullLevel);
}

void Soak::checkBacklight() {
    bool on = false;
    int level = 0;
    const bool visible = plugged_.contains(0);
    std::string found;
    const bool held = pollUntil(patience, [&] {
        const Answer state = ask("state");
        level = backlight_->value();
        found =
            state.at("pwm") + ", stored " + state.at("stored") + ", level " + std::to_string(level);
        on = state.at("pwm") == "Locked";
        if (!on && state.at("pwm") != "Off")
            return false;
        // A mode that was stored comes back some time after the panel.
        return !visible ||
               (on == (state.at("stored") == "1") && model_.locked.contains(on) &&
                (on ? level == fullLevel || levelIsUnknown() : model_.levels.contains(level)));
    });
    EXPECT_TRUE(held) << found << "; wanted: on " << testing::PrintToString(model_.locked)
                      << ", levels " << testing::PrintToString(model_.levels);
    model_.locked = {on};
    if (!visible)
        model_.anyMode();
    else if (!on)
        model_.levels = {level};
    else if (levelIsUnknown())
        model_.levels.insert(level);
}

/// logind, which writes it, may take a moment longer than the program.
void Soak::checkLevelAfterTheEnd() {
    int level = 0;
    EXPECT_TRUE(pollUntil(Duration(3000),
                          [&] {
                              level = backlight_->value();
                              return model_.levels.contains(level);
                          }))
        << level << " after the end, not one of " << testing::PrintToString(model_.levels);
    model_.levels = {level};
}

} // namespace noctra::desktop
