#include "tests/desktop/support/PanelFixture.h"

#include <stdexcept>

namespace noctra::desktop {

namespace {

bool isOpen(const Accessible& accessible) {
    return accessible.role() == AccessibleRole::frame && accessible.name() == panelTitle;
}

} // namespace

void PanelFixture::SetUp() {
    DesktopFixture::SetUp();
    const auto bigger = desktop().startOther(
        {"/usr/bin/xrandr", "--output", "DUMMY0", "--mode",
         std::to_string(firstDisplay.width) + "x" + std::to_string(firstDisplay.height)});
    if (bigger->waitForEnding() != exited(0))
        throw std::runtime_error("the first display stays too small for the panel");
    accessibilityBus_ = std::make_unique<AccessibilityBus>(desktop().busAddress());
    tree_ = std::make_unique<AccessibleTree>(accessibilityBus_->address());
    hands_ = std::make_unique<InputDevices>(server().display());
    windows_ = std::make_unique<WindowManagement>(server().display());
    desktop().setVariable("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
    moveAway();
}

std::unique_ptr<Program> PanelFixture::startWithPanel() {
    std::unique_ptr<Program> program = startProgram();
    showPanel();
    return program;
}

void PanelFixture::showPanel() {
    channel().open({"noctra://show"});
    const bool open = pollUntil(patience, [this] {
        const auto window = tree_->find(isOpen);
        return window && window->is(AccessibleState::active) && has(controls::power);
    });
    if (!open)
        throw std::runtime_error("the panel did not open");
}

bool PanelFixture::panelGoes() const {
    return pollUntil(patience,
                     [this] { return !windows_->shows(panelTitle) && !tree_->find(isOpen); });
}

Accessible PanelFixture::control(const std::string& name) const {
    std::optional<Accessible> found;
    pollUntil(patience, [&] {
        found = tree_->find([&](const Accessible& one) {
            return one.role() != AccessibleRole::application && one.name() == name;
        });
        return found.has_value();
    });
    if (!found)
        throw std::runtime_error("the panel has no " + name);
    return *found;
}

bool PanelFixture::has(const std::string& name) const {
    return tree_->find([&](const Accessible& one) { return one.name() == name; }).has_value();
}

bool PanelFixture::becomes(const std::string& name,
                           const std::function<bool(const Accessible&)>& condition) const {
    return pollUntil(patience, [&] {
        return tree_
            ->find([&](const Accessible& one) { return one.name() == name && condition(one); })
            .has_value();
    });
}

bool PanelFixture::reads(const std::string& name, const std::string& description) const {
    return becomes(name, [&](const Accessible& one) { return one.description() == description; });
}

void PanelFixture::click(const std::string& name) const {
    hands_->click(control(name).extents().center());
}

void PanelFixture::dragUp(const std::string& fader) const {
    const Box box = control(fader).extents();
    hands_->drag(box.at(0.5, 1), box.at(0.5, 0));
}

void PanelFixture::dragDown(const std::string& fader) const {
    const Box box = control(fader).extents();
    hands_->drag(box.at(0.5, 0), box.at(0.5, 1));
}

void PanelFixture::openSettings() const {
    click(controls::gear);
    const Box panel = panelExtents();
    if (!becomes(controls::sheet, [&](const Accessible& one) { return one.extents() == panel; }))
        throw std::runtime_error("the settings did not open");
}

void PanelFixture::closeSettings() const {
    click(controls::close);
    if (!pollUntil(patience, [this] { return !has(controls::sheet); }))
        throw std::runtime_error("the settings did not close");
}

Box PanelFixture::panelExtents() const {
    return control(panelTitle).extents();
}

} // namespace noctra::desktop
