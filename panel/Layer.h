#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "foundation/Clock.h"
#include "foundation/Color.h"
#include "panel/CubicBezier.h"
#include "panel/Rect.h"

namespace noctra {

class Layer;
class LayerTransaction;

enum class LayerChange { geometry, looks, tree };

/// Whoever draws a tree of layers.
class LayerHost {
public:
    virtual ~LayerHost() = default;
    /// `layer` has changed: its frame, its looks, or which sublayers it has.
    virtual void layerChanged(const Layer& layer, LayerChange change) = 0;
};

/// Colours from the bottom edge (location 0) to the top edge (location 1), as y grows; one location
/// each, in ascending order. Copying it allocates nothing.
struct LayerGradient {
    static constexpr std::size_t mostStops = 4;
    std::array<Color, mostStops> colors;
    std::array<double, mostStops> locations;
    std::size_t stops = mostStops; ///< how many of them count

    friend bool operator==(const LayerGradient&, const LayerGradient&) = default;
};

/// What a layer looks like; lengths in points. The border lies inside the frame, above the
/// sublayers. The shadow is that of everything that the layer and its sublayers draw.
struct LayerLooks {
    Color backgroundColor = colors::clear;
    double cornerRadius = 0.0;
    double borderWidth = 0.0;
    Color borderColor = colors::black;
    Color shadowColor = colors::black;
    double shadowOffsetX = 0.0;
    double shadowOffsetY = -3.0; ///< upwards
    double shadowRadius = 3.0;   ///< the standard deviation of the blur
    double shadowOpacity = 0.0;
    std::optional<LayerGradient> gradient = std::nullopt; ///< drawn over the background

    friend bool operator==(const LayerLooks&, const LayerLooks&) = default;
};

/// A rectangle in a retained scene, with the layers that lie on it. Main thread.
///
/// The frame is in the superlayer's coordinates. The host of the root hears of every change in its
/// tree; assigning what is there already changes nothing and tells nobody.
class Layer {
public:
    Layer() = default;
    Layer(const Layer&) = delete;
    Layer& operator=(const Layer&) = delete;
    ~Layer();

    [[nodiscard]] const Rect& frame() const { return frame_; }
    [[nodiscard]] Rect bounds() const { return {0.0, 0.0, frame_.width, frame_.height}; }
    /// Glides to `frame` inside a LayerTransaction of the tree that has its actions enabled; else
    /// it is there at once. Allocates nothing.
    void setFrame(const Rect& frame);
    /// What is to be shown at `now`: the frame, or a place on the way to it.
    [[nodiscard]] Rect presentationFrame(SteadyClock::TimePoint now) const;
    [[nodiscard]] bool isGliding(SteadyClock::TimePoint now) const;

    [[nodiscard]] const LayerLooks& looks() const { return looks_; }
    void setLooks(LayerLooks looks);
    void setBackgroundColor(const Color& color);

    /// The sublayers from back to front.
    [[nodiscard]] const std::vector<std::shared_ptr<Layer>>& sublayers() const {
        return sublayers_;
    }
    [[nodiscard]] const Layer* superlayer() const { return superlayer_; }
    /// In front of all others; `layer` leaves the superlayer that it has, and is not above this
    /// one.
    void addSublayer(std::shared_ptr<Layer> layer);
    /// So that it comes to lie at `index` from the back.
    void insertSublayer(std::shared_ptr<Layer> layer, std::size_t index);
    void removeFromSuperlayer();

    /// `host` may be null and must outlive the layer or be taken back. Only the root tells its
    /// host.
    void setHost(LayerHost* host) { host_ = host; }

private:
    friend class LayerTransaction;

    struct Glide {
        Rect from;
        SteadyClock::TimePoint start;
        Seconds duration;
        CubicBezier curve;
    };

    const Layer& root() const;
    void tell(LayerChange change) const;

    Rect frame_;
    std::optional<Glide> glide_;
    LayerLooks looks_;
    std::vector<std::shared_ptr<Layer>> sublayers_;
    Layer* superlayer_ = nullptr;
    LayerHost* host_ = nullptr;
    const LayerTransaction* transaction_ = nullptr; ///< the open one, at the root
};

} // namespace noctra
