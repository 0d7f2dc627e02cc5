// The desktop that the soak runs on.

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

} // namespace noctra::desktop
