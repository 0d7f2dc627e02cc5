#pragma once

#include <memory>

#include "foundation/Clock.h"
#include "panel/Layer.h"
#include "panel/Rect.h"

namespace noctra {

/// A view whose picture is a tree of layers. Main thread.
class LayerView {
public:
    /// Glides are timed by `clock`, which must outlive the view.
    explicit LayerView(const SteadyClock& clock) : clock_(clock) {}
    LayerView(const LayerView&) = delete;
    LayerView& operator=(const LayerView&) = delete;
    virtual ~LayerView() = default;

    /// Gives the view its backing layer, or takes it away.
    void setWantsLayer(bool wantsLayer);
    /// The root of the tree; null without layer backing.
    [[nodiscard]] Layer* layer() const { return layer_.get(); }

    [[nodiscard]] const Rect& bounds() const { return bounds_; }
    /// In points. `layout` is the caller's to run afterwards.
    void setSize(double width, double height) { bounds_ = {0.0, 0.0, width, height}; }

    /// Places the layers within the bounds.
    virtual void layout();

protected:
    [[nodiscard]] const SteadyClock& clock() const { return clock_; }

private:
    const SteadyClock& clock_;
    Rect bounds_;
    std::shared_ptr<Layer> layer_;
};

} // namespace noctra
