#include "pwmsafe/PwmSafeStatusRow.h"

#include <utility>

#include "platform/CursorStack.h"

namespace noctra {

namespace {

using Level = ColorFilterManager::FlickerWarningLevel;

constexpr Color lockedGreen{0.0, 1.0, 0.4};

} // namespace

PwmSafeStatusRow::PwmSafeStatusRow(ColorFilterManager& filterManager,
                                   PwmSafeManager& pwmSafeManager, MainQueue& mainQueue,
                                   CursorStack& cursor, std::function<void()> changed)
    : filterManager_(filterManager), pwmSafeManager_(pwmSafeManager), mainQueue_(mainQueue),
      cursor_(cursor), changed_(std::move(changed)), showedToggleRow_(showsToggleRow()),
      showedWarning_(showsWarning()), lookAgain_(mainQueue, [this] { controllersChanged(); }) {
    // The signal comes before the change: the new value is there on a later turn.
    const auto look = [this] {
        if (!lookAgain_.isPending())
            lookAgain_.schedule(Seconds(0));
    };
    filterChanges_ = filterManager_.onWillChange(look);
    pwmSafeChanges_ = pwmSafeManager_.onWillChange(look);
}

PwmSafeStatusRow::~PwmSafeStatusRow() {
    resetHoverState();
}

bool PwmSafeStatusRow::showsToggleRow() const {
    return pwmSafeManager_.isAvailable && pwmSafeManager_.hasControllableDisplay;
}

bool PwmSafeStatusRow::showsWarning() const {
    return filterManager_.flickerWarningLevel() != Level::none;
}

PwmSafeStatusRow::State PwmSafeStatusRow::state() const {
    if (!pwmSafeManager_.isEnabled)
        return State::off;
    return pwmSafeManager_.verified ? State::locked : State::locking;
}

Color PwmSafeStatusRow::dotColor(double offOpacity) const {
    switch (state()) {
    case State::locked:
        return lockedGreen;
    case State::locking:
        return colors::systemYellow;
    case State::off:
        break;
    }
    return colors::white.withAlpha(offOpacity);
}

Color PwmSafeStatusRow::dotGlowColor() const {
    const Color dot = dotColor(dotOffOpacity);
    return dot.withAlpha(dot.alpha * 0.6);
}

Color PwmSafeStatusRow::borderColor() const {
    return state() == State::off ? colors::white.withAlpha(0.08) : dotColor(0.0).withAlpha(0.4);
}

Color PwmSafeStatusRow::labelColor() const {
    return colors::white.withAlpha(state() == State::off ? 0.5 : 0.95);
}

std::string_view PwmSafeStatusRow::statusWord() const {
    switch (state()) {
    case State::locked:
        return "ON";
    case State::locking:
        return "...";
    case State::off:
        break;
    }
    return "OFF";
}

Color PwmSafeStatusRow::warningColor() const {
    return filterManager_.flickerWarningLevel() == Level::severe ? colors::systemRed
                                                                 : colors::systemYellow;
}

std::string_view PwmSafeStatusRow::warningText() const {
    return filterManager_.flickerWarningLevel() == Level::severe
               ? "DISPLAY BRIGHTNESS LOW —\nNOCTRA CANNOT REDUCE PWM HERE"
               : "KEEP MONITOR AT 100%\nAND THEN DIM HERE";
}

std::string_view PwmSafeStatusRow::tooltipText() {
    return "For the smoothest, Lowest-flicker\n"
           "setup, set your monitor's brightness\n"
           "at 100% (using physical buttons) and\n"
           "dim from Noctra instead.";
}

Color PwmSafeStatusRow::tooltipBorderColor() {
    return colors::systemYellow;
}

void PwmSafeStatusRow::toggle() {
    pwmSafeManager_.isEnabled = !pwmSafeManager_.isEnabled;
}

void PwmSafeStatusRow::hoverWarning(bool inside) {
    if (!showsWarning())
        return;
    infoHovered_ = inside;
    if (inside && !cursorPushed_) {
        cursor_.pushPointingHand();
        cursorPushed_ = true;
    } else if (!inside && cursorPushed_) {
        cursor_.pop();
        cursorPushed_ = false;
    }
    updateTooltipVisibility();
}

void PwmSafeStatusRow::hoverTooltip(bool inside) {
    tooltipHovered_ = inside;
    updateTooltipVisibility();
}

void PwmSafeStatusRow::updateTooltipVisibility() {
    const bool hovered = infoHovered_ || tooltipHovered_;
    if (hovered && tooltipVisible_)
        return;
    mainQueue_.asyncAfter(
        hovered ? tooltipShowDelay : tooltipHideDelay,
        [this, alive = std::weak_ptr(alive_), hovered, generation = hoverGeneration_] {
            if (alive.expired() || hoverGeneration_ != generation)
                return;
            if ((infoHovered_ || tooltipHovered_) == hovered)
                setTooltipVisible(hovered);
        });
}

void PwmSafeStatusRow::setTooltipVisible(bool visible) {
    if (tooltipVisible_ == visible)
        return;
    tooltipVisible_ = visible;
    if (changed_)
        changed_();
}

void PwmSafeStatusRow::resetHoverState() {
    ++hoverGeneration_;
    infoHovered_ = false;
    tooltipHovered_ = false;
    tooltipVisible_ = false;
    if (cursorPushed_) {
        cursor_.pop();
        cursorPushed_ = false;
    }
}

void PwmSafeStatusRow::controllersChanged() {
    const bool showedToggleRow = std::exchange(showedToggleRow_, showsToggleRow());
    const bool showedWarning = std::exchange(showedWarning_, showsWarning());
    if (showedToggleRow == showedToggleRow_ && (!showedWarning || showedWarning_))
        return; // the face is the same, and no warning has vanished
    resetHoverState();
    if (changed_)
        changed_();
}

} // namespace noctra
