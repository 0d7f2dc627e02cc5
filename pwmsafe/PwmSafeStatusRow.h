#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

#include "engine/ColorFilterManager.h"
#include "foundation/Color.h"
#include "foundation/MainQueue.h"
#include "foundation/Observable.h"
#include "pwmsafe/PwmSafeManager.h"

namespace noctra {

class CursorStack;

/// The panel's row for PWM-safe mode, which has two faces: a bar that switches the mode where it
/// can work, else a warning about a flickering backlight, with a tooltip. Main thread.
///
/// Lives as long as the row is on the screen; destroying it gives a pushed cursor back.
class PwmSafeStatusRow {
public:
    /// How long the pointer rests before the tooltip opens, and how long after it has left both
    /// the warning and the tooltip it closes: long enough to move from one to the other.
    static constexpr Seconds tooltipShowDelay{0.5};
    static constexpr Seconds tooltipHideDelay{0.2};
    /// The tooltip's distance from the warning below it, in points.
    static constexpr double tooltipGap = 10.0;

    /// `changed` is called, never from inside a call into the row, when something about the row
    /// other than the controllers' values has changed. All arguments outlive the row.
    PwmSafeStatusRow(ColorFilterManager& filterManager, PwmSafeManager& pwmSafeManager,
                     MainQueue& mainQueue, CursorStack& cursor, std::function<void()> changed);
    PwmSafeStatusRow(const PwmSafeStatusRow&) = delete;
    PwmSafeStatusRow& operator=(const PwmSafeStatusRow&) = delete;
    ~PwmSafeStatusRow();

    /// The bar is shown; otherwise the warning.
    [[nodiscard]] bool showsToggleRow() const;
    /// The warning can be seen and reacts to the pointer.
    [[nodiscard]] bool showsWarning() const;

    [[nodiscard]] Color dotColor(double offOpacity) const;
    /// Of the glow around the status dot.
    [[nodiscard]] Color dotGlowColor() const;
    [[nodiscard]] Color borderColor() const;
    [[nodiscard]] Color labelColor() const;
    [[nodiscard]] std::string_view statusWord() const;
    [[nodiscard]] Color warningColor() const;
    [[nodiscard]] std::string_view warningText() const;
    [[nodiscard]] static std::string_view tooltipText();
    /// The same whatever the level.
    [[nodiscard]] static Color tooltipBorderColor();

    static constexpr std::string_view label = "PWM-SAFE MODE";
    /// The opacities of the dot and of the status word while the mode is off.
    static constexpr double dotOffOpacity = 0.25;
    static constexpr double statusOffOpacity = 0.4;

    [[nodiscard]] bool isTooltipShown() const { return tooltipVisible_ && showsWarning(); }
    /// How far the tooltip's top lies above the warning's, in points.
    [[nodiscard]] double tooltipLift() const { return tooltipMeasuredHeight_ + tooltipGap; }

    /// A click on the bar.
    void toggle();
    /// The pointer has entered (true) or left the warning.
    void hoverWarning(bool inside);
    /// The pointer has entered (true) or left the tooltip.
    void hoverTooltip(bool inside);
    /// The tooltip's laid-out height in points.
    void setTooltipMeasuredHeight(double height) { tooltipMeasuredHeight_ = height; }

private:
    enum class State { off, locking, locked };
    [[nodiscard]] State state() const;

    void updateTooltipVisibility();
    void resetHoverState();
    void setTooltipVisible(bool visible);
    void controllersChanged();

    ColorFilterManager& filterManager_;
    PwmSafeManager& pwmSafeManager_;
    MainQueue& mainQueue_;
    CursorStack& cursor_;
    const std::function<void()> changed_;

    bool infoHovered_ = false;
    bool tooltipHovered_ = false;
    bool tooltipVisible_ = false;
    bool cursorPushed_ = false;
    /// Delayed showing and hiding does nothing where this has changed since it was asked for.
    std::int64_t hoverGeneration_ = 0;
    double tooltipMeasuredHeight_ = 112.0;

    /// As last seen, to notice the changes that end all hovering.
    bool showedToggleRow_;
    bool showedWarning_;
    WorkItem lookAgain_;
    AnyCancellable filterChanges_;
    AnyCancellable pwmSafeChanges_;
    const std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

} // namespace noctra
