// The desktop that the soak runs on: how it comes up, and how the program is started on it again.

#include <csignal>

#include "tests/desktop/soak/Soak.h"
#include "tests/desktop/support/MountNamespace.h"

namespace noctra::desktop {

namespace {

constexpr int outputs = 4;

bool mountsAreOurs = false;

} // namespace

void Soak::SetUpTestSuite() {
    mountsAreOurs = canPutFoldersElsewhere();
    if (mountsAreOurs)
        enterOwnMounts();
}

void Soak::SetUp() {
    if (!mountsAreOurs)
        GTEST_SKIP() << "no mount namespace can be made here (root is needed)";
    backlight_ = std::make_unique<FakeBacklight>(400);
    bringUp();
}

void Soak::TearDown() {
    if (IsSkipped())
        return;
    if (HasFailure() && program_)
        for (const auto& lines : {program_->outputLines(), program_->errorLines()})
            for (const std::string& line : lines)
                if (!line.starts_with("state ") && !line.starts_with("panel "))
                    std::cout << "| " << line << "\n";
    takeDown();
}

void Soak::bringUp() {
    PanelFixture::SetUp();
    config_ = std::make_unique<SmallDisk>(desktop().preferencesFile().parent_path().parent_path());
    runtime_ = std::make_unique<SmallDisk>(desktop().runtimeFolder());
    plugs().setBuiltIn(0, true);
    plugged_.clear();
    for (int output = 0; output < outputs; ++output) {
        plugs().plug(output);
        plugged_.insert(output);
    }
    settings_ = std::make_unique<XSettingsManager>(server().display(), "Gtk/EnableAnimations", 0);
    model_ = {};
    model_.levels = {backlight_->value()};
    for (const auto& [crtc, tables] : tablesBefore())
        model_.own[crtc] = {tables};
    learnThePanel();
    trayKind_ = chance.once(2) ? TrayKind::embedded : TrayKind::notifierItems;
    tray_ = std::make_unique<TrayHost>(desktop(), trayKind_);
    tray_->start();
    systemBus_ = std::make_unique<SystemBus>();
    desktop().setVariable("DBUS_SYSTEM_BUS_ADDRESS", systemBus_->address());
    bringUpLogind();
    commands_ = std::make_unique<CommandChannel>(desktop().busAddress());
    start();
}

void Soak::takeDown() {
    otherStarts_.clear();
    program_.reset();
    tray_.reset();
    logind_.reset();
    systemBus_.reset();
    settings_.reset();
    config_.reset();
    runtime_.reset();
}

void Soak::bringUpLogind() {
    systemBus_->start();
    logind_ = std::make_unique<MockLogind>(*systemBus_);
    if (chance.once(2))
        logind_->refuseBrightness(true);
    else
        logind_->obeyBrightness(backlight_->brightnessFile());
}

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

void Soak::start() {
    const auto preferences = readPreferences();
    const auto number = [&](const char* key, double missing) {
        return preferences.contains(key) ? std::stod(preferences.at(key)) : missing;
    };
    program_ = startDriven(backlight_->launcher());
    logRead_ = 0;
    errorsRead_ = 0;
    atFirst_.reset();
    model_.enabled = {false};
    model_.warmth = number("filterIntensity", 0);
    model_.brightness = number("filterBrightness", 1);
    model_.extremeDim = number("allowExtremeDim", 0) != 0;
    model_.handled = false;
    model_.ignoredUrls = 0;
    model_.mayEndByHand = false;
    model_.recordDoubtful = !runtime_->isUsable();
    model_.saved = readFile(desktop().preferencesFile());
    model_.recordGone = false;
    model_.preferencesGone = false;
    model_.displaysChange = false;
    program_->type("open");
    model_.locked = {number("pwmSafeMode", 0) != 0};
    if (!model_.builtInLit)
        model_.anyMode();
    ++model_.backlightEvents;
}

void Soak::endAndStartAgain(const Ending& expected) {
    EXPECT_EQ(program_->waitForEnding(), expected);
    backlight_->setFailing(false);
    model_.displaysChange = false;
    if (!expected.bySignal) {
        const std::string trouble = tableTrouble(false);
        EXPECT_EQ(trouble, "") << "after the end";
        EXPECT_TRUE(model_.levels.contains(backlight_->value())) << backlight_->value();
        model_.levels = {backlight_->value()};
        keepWhatIsFound(false);
    } else {
        ++model_.crashes;
        model_.levels.insert({1000, backlight_->value()}); // whichever it had just then
        if (model_.recordDoubtful || model_.recordGone)
            for (const auto& [crtc, tables] : model_.own)
                probe().write(crtc, tables.front());
    }
    checkLog();
    start();
}

} // namespace noctra::desktop
