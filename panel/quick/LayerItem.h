#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "foundation/Clock.h"
#include "panel/Layer.h"
#include "panel/quick/BoxPicture.h"
#include "panel/quick/DevicePicture.h"

namespace noctra {

/// Draws retained layers of one superlayer, with their sublayers, from back to front. The item is
/// as large as the layers with their shadows, and lies where they lie.
///
/// A single layer that moves moves the item; only what changes the picture paints it again.
class LayerItem : public DevicePicture {
    Q_OBJECT

public:
    explicit LayerItem(QQuickItem* parent) : DevicePicture(parent) {}

    void setLayers(std::vector<std::shared_ptr<Layer>> layers);
    [[nodiscard]] bool shows(const Layer& layer) const;

    /// To be called when one of the layers, or one below them, has changed; `arrange` follows.
    void layerChanged(const Layer& layer, LayerChange change);

    /// Places the item on `grid`, whose pixel (0, 0) is the top-left corner of the superlayer.
    /// `height` is that of the superlayer in pixels. With a time, layers are where their glides are
    /// then; without one, where they glide to. Sublayers do not glide.
    void arrange(const PixelGrid& grid, int height, std::optional<SteadyClock::TimePoint> now);
    [[nodiscard]] bool isGliding(SteadyClock::TimePoint now) const;

protected:
    void paintPixels(QPainter& painter) override;

private:
    std::vector<std::shared_ptr<Layer>> layers_;
    bool stale_ = true; ///< the picture is not that of the layers any more
    double scale_ = 0.0;
    QSize firstSize_;    ///< of the first layer in pixels: what `picture_` was made for
    BoxPicture picture_; ///< from the first layer's top-left corner on
    std::vector<PixelBox> next_;
};

} // namespace noctra
