#pragma once

#include "foundation/Clock.h"
#include "panel/CubicBezier.h"
#include "panel/Layer.h"

namespace noctra {

/// While it lives, decides how the frames of a tree of layers change; its end commits. Transactions
/// on one tree may be nested: the inner one decides. Main thread; allocates nothing.
class LayerTransaction {
public:
    /// Begins on the tree of `root`, which has no superlayer and outlives the transaction. Glides
    /// start at the clock's present time.
    LayerTransaction(Layer& root, const SteadyClock& clock)
        : root_(root), outer_(root.transaction_), beginTime_(clock.now()) {
        root_.transaction_ = this;
    }
    LayerTransaction(const LayerTransaction&) = delete;
    LayerTransaction& operator=(const LayerTransaction&) = delete;
    ~LayerTransaction() { root_.transaction_ = outer_; }

    void setAnimationDuration(Seconds duration) { duration_ = duration; }
    void setAnimationTimingFunction(const CubicBezier& curve) { curve_ = curve; }
    /// Changes are there at once; a glide that is under way ends where the new frame says.
    void setDisableActions(bool disable) { disableActions_ = disable; }

    [[nodiscard]] SteadyClock::TimePoint beginTime() const { return beginTime_; }
    [[nodiscard]] Seconds animationDuration() const { return duration_; }
    [[nodiscard]] const CubicBezier& animationTimingFunction() const { return curve_; }
    [[nodiscard]] bool disableActions() const { return disableActions_; }

private:
    Layer& root_;
    const LayerTransaction* outer_;
    SteadyClock::TimePoint beginTime_;
    Seconds duration_{0.25};
    CubicBezier curve_ = timing::easeInOut;
    bool disableActions_ = false;
};

} // namespace noctra
