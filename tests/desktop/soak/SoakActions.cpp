// What happens to the program and to its desktop.

#include <array>
#include <csignal>

#include "tests/desktop/soak/Soak.h"

namespace noctra::desktop {

namespace {

struct GoodUrl {
    const char* text;
    std::set<bool> ofOff; ///< what the filter is then where it was off
    std::set<bool> ofOn;
};

const std::vector<GoodUrl> goodUrls{
    {"noctra://on", {true}, {true}},      {"noctra://oN/x?y", {true}, {true}},
    {"noctra://off", {false}, {false}},   {"noctra://OFF/#z", {false}, {false}},
    {"noctra://toggle", {true}, {false}}, {"noctra://show", {false}, {true}},
};

std::vector<std::string> badUrls() {
    return {"http://on",     "noctra://dim",    "noctra://" + std::string(8193, 'o'),
            "noctra://o\tn", "noctra://on\x7F", "",
            "noctra:on",     "noctra://%6Fn",   "noctra://\xC3\xB6n"};
}

std::set<bool> after(const GoodUrl& url, const std::set<bool>& before) {
    std::set<bool> either;
    for (const bool on : before)
        either.merge(std::set<bool>(on ? url.ofOn : url.ofOff));
    return either;
}

constexpr std::array notText{"noctra://\xFFon", "noctra://off\xC3", "noctra://\xED\xA0\x80"};

} // namespace

const std::vector<Soak::Action> Soak::actions{
    {"good URL", 24, &Soak::goodUrl},
    {"bad URL", 8, &Soak::badUrl},
    {"plug", 14, &Soak::plugOrUnplug},
    {"mode", 4, &Soak::changeMode},
    {"wake", 4, &Soak::wake},
    {"system bus", 2, &Soak::restartSystemBus},
    {"session bus", 3, &Soak::restartSessionBus},
    {"tray", 3, &Soak::restartTray},
    {"drag", 6, &Soak::drag},
    {"wheel", 4, &Soak::turnTheWheel},
    {"press", 6, &Soak::press},
    {"settings", 4, &Soak::useTheSettings},
    {"close", 2, &Soak::closePanel},
    {"config", 9, &Soak::disturbConfig},
    {"config gone", 4, &Soak::removeFromConfig},
    {"runtime", 4, &Soak::disturbRuntime},
    {"foreign tables", 6, &Soak::writeForeignTables},
    {"backlight", 5, &Soak::setBacklight},
    {"backlight fails", 2, &Soak::breakBacklight},
    {"PWM-safe mode", 6, &Soak::switchPwmSafe},
    {"login", 3, &Soak::switchLogin},
    {"end", 3, &Soak::endBySignal},
    {"crash", 3, &Soak::crash},
    {"stop", 3, &Soak::stopAndContinue},
    {"vain signal", 2, &Soak::signalInVain},
    {"server", 1, &Soak::loseTheServer},
};

/// By a later start, which is a race with whatever else there is, or over the bus, in order.
void Soak::open(const std::string& url, bool throughABus) {
    awaitProgramOnBus();
    if (throughABus)
        commands_->openWithoutWaiting({url});
    else
        otherStarts_.push_back(desktop().start({url}));
}

void Soak::goodUrl() {
    openGood(!chance.once(5));
}

void Soak::openGood(bool throughABus) {
    const GoodUrl url = chance.of(goodUrls);
    note(url.text);
    open(url.text, throughABus);
    if (!otherStarts_.empty() || model_.handled) // in whatever order they arrive
        model_.anyFilter();
    else
        model_.enabled = after(url, model_.enabled);
}

void Soak::badUrl() {
    const bool throughABus = !chance.once(3);
    std::string url = !throughABus && chance.once(2) ? chance.of(notText) : chance.of(badUrls());
    if (!throughABus && url.empty())
        url = "noctra:"; // an empty word of a command line is no URL
    note(std::to_string(url.size()) + " bytes");
    open(url, throughABus);
    ++model_.ignoredUrls;
}

void Soak::plug(int output, bool in) {
    const TablesByCrtc before = probe().readLit();
    in ? plugs().plug(output) : plugs().unplug(output);
    const TablesByCrtc after = probe().readLit();
    for (const auto& [crtc, tables] : before)
        if (!after.contains(crtc))
            model_.leftWith[output] = model_.own[crtc];
    for (const auto& [crtc, tables] : after)
        if (!before.contains(crtc)) {
            auto& own = model_.own[crtc];
            const auto& brought = model_.leftWith[output];
            own.insert(own.end(), brought.begin(), brought.end());
            model_.recordDoubtful = model_.recordDoubtful || !runtime_->isUsable();
        }
    if (in)
        plugged_.insert(output);
    else
        plugged_.erase(output);
    if (output == 0)
        model_.builtInLit = false;
    model_.displaysChange = true;
}

void Soak::plugOrUnplug() {
    const int output = chance.below(5);
    note(std::to_string(output));
    plug(output, !plugged_.contains(output));
}

void Soak::changeMode() {
    if (plugged_.empty())
        return note("(no display)");
    const int output =
        *std::next(plugged_.begin(), chance.below(static_cast<int>(plugged_.size())));
    setMode(output, chance.of(std::array{"640x480", "800x600", "1024x768"}));
}

void Soak::setMode(int output, const std::string& mode) {
    const std::string name = "DUMMY" + std::to_string(output);
    note(name + " " + mode);
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"--addmode", name, mode}, {"--output", name, "--mode", mode}}) {
        std::vector<std::string> command{"/usr/bin/xrandr"};
        command.insert(command.end(), arguments.begin(), arguments.end());
        EXPECT_EQ(desktop().startOther(command)->waitForEnding(), exited(0));
    }
    model_.displaysChange = true;
}

void Soak::wake() {
    logind_->prepareForSleep(true);
    logind_->prepareForSleep(false);
    model_.displaysChange = true;
}

void Soak::restartSystemBus() {
    logind_.reset();
    systemBus_->kill();
    bringUpLogind();
}

void Soak::restartSessionBus() {
    awaitOtherStarts();
    commands_.reset();
    desktop().bus().restart();
    commands_ = std::make_unique<CommandChannel>(desktop().busAddress());
    model_.anyFilter(); // what was on its way over the old bus
    model_.urlsMayBeLost = true;
    if (trayKind_ == TrayKind::notifierItems)
        restartTray();
}

void Soak::restartTray() {
    if (trayKind_ == TrayKind::notifierItems && !config_->isUsable())
        return note("(no disk for its settings)");
    tray_.reset();
    tray_ = std::make_unique<TrayHost>(desktop(), trayKind_);
    tray_->start();
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
    model_.mayEndByHand = true; // what was pressed may have covered what was meant
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
    model_.login.reset();
}

void Soak::closePanel() {
    hands().type({"Escape"});
}

void Soak::disturbConfig() {
    model_.diskChanges = true;
    model_.login.reset();
    if (!config_->isUsable()) {
        config_->repair();
        return note("repaired");
    }
    const bool full = chance.once(2);
    full ? config_->fill() : config_->setReadOnly(true);
    note(full ? "full" : "read-only");
}

void Soak::removeFromConfig() {
    const bool preferences = chance.once(2);
    model_.diskChanges = true;
    config_->repair();
    std::filesystem::remove_all(config_->path() / (preferences ? "noctra" : "autostart"));
    note(preferences ? "preferences" : "autostart");
    model_.preferencesGone = model_.preferencesGone || preferences;
    model_.login.reset();
}

void Soak::disturbRuntime() {
    switch (chance.below(3)) {
    case 0:
        runtime_->fill();
        return note("full");
    case 1:
        runtime_->repair();
        std::filesystem::remove_all(runtime_->path() / "noctra");
        model_.recordGone = true;
        return note("removed");
    default:
        runtime_->repair();
        return note("repaired");
    }
}

/// On displays only: what is on a CRTC without one is nobody's.
void Soak::writeForeignTables() {
    for (const auto& [crtc, tables] : probe().readLit()) {
        if (chance.once(2))
            continue;
        Tables foreign = tables;
        const int top = 30000 + chance.below(30000);
        for (auto* levels : {&foreign.red, &foreign.green, &foreign.blue})
            for (std::size_t i = 0; i < levels->size(); ++i)
                (*levels)[i] = static_cast<std::uint16_t>(top * static_cast<int>(i * i) / 65025);
        probe().write(crtc, foreign);
        model_.own[crtc].push_back(foreign);
        note(std::to_string(crtc));
    }
}

void Soak::setBacklight() {
    const int level = 100 * (1 + chance.below(9));
    note(std::to_string(level));
    backlight_->set(level);
    const bool alone = model_.backlightEvents++ == 0;
    if (alone && model_.locked == std::set{false})
        model_.levels = {level};
    else if (!alone || model_.locked != std::set{true})
        model_.levels.insert(level);
    if (model_.locked.contains(true))
        model_.anyMode(); // it may be checking just now, and then gives up
}

/// Until the round is over.
void Soak::breakBacklight() {
    backlight_->setFailing(true);
    ++model_.backlightEvents;
    if (model_.locked != std::set{false}) {
        model_.anyMode();
        model_.levels.insert(1000);
    }
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
        model_.levels.insert(1000);
}

void Soak::switchLogin() {
    const bool on = chance.once(2);
    note(on ? "on" : "off");
    program_->type(on ? "login on" : "login off");
    model_.login.reset();
    if (config_->isUsable())
        model_.login = on;
}

void Soak::endBySignal() {
    awaitOtherStarts();
    const int signal = chance.of(std::array{SIGTERM, SIGINT, SIGHUP});
    note(std::to_string(signal));
    program_->signal(signal);
    endAndStartAgain(exited(0));
}

void Soak::crash() {
    awaitOtherStarts();
    if (isStoppedByHand())
        return note("(stopped by hand)");
    const int signal = chance.of(std::array{SIGKILL, SIGKILL, SIGABRT, SIGALRM});
    note(std::to_string(signal));
    program_->signal(signal);
    endAndStartAgain({true, signal});
}

/// While it is stopped a lot comes together.
void Soak::stopAndContinue() {
    awaitOtherStarts();
    program_->signal(SIGSTOP);
    for (int more = chance.below(8); more > 0; --more)
        chance.once(3) ? plugOrUnplug() : openGood(true);
    program_->signal(SIGCONT);
}

void Soak::signalInVain() {
    program_->signal(SIGPIPE);
}

void Soak::loseTheServer() {
    awaitOtherStarts();
    if (isStoppedByHand())
        return note("(stopped by hand)");
    server().killAtOnce();
    EXPECT_EQ(program_->waitForEnding(), exited(1));
    EXPECT_FALSE(program_->errorLines().empty());
    backlight_->setFailing(false);
    EXPECT_TRUE(model_.levels.contains(backlight_->value())) << backlight_->value();
    takeDown();
    bringUp();
}

} // namespace noctra::desktop
