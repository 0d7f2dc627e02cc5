#include "panel/quick/LayerItem.h"

#include <algorithm>
#include <utility>

#include <QtGui/QPainter>

#include "panel/quick/LayerBoxes.h"

namespace noctra {

void LayerItem::setLayers(std::vector<std::shared_ptr<Layer>> layers) {
    layers_ = std::move(layers);
    stale_ = true;
}

bool LayerItem::shows(const Layer& layer) const {
    return std::any_of(layers_.begin(), layers_.end(),
                       [&layer](const auto& shown) { return shown.get() == &layer; });
}

void LayerItem::layerChanged(const Layer& layer, LayerChange change) {
    const bool onlyMoves =
        change == LayerChange::geometry && layers_.size() == 1 && &layer == layers_[0].get();
    if (!onlyMoves)
        stale_ = true;
}

void LayerItem::arrange(const PixelGrid& grid, int height,
                        std::optional<SteadyClock::TimePoint> now) {
    const auto pixelsNow = [&](const Layer& layer) {
        return pixelsOf(now ? layer.presentationFrame(*now) : layer.frame(), grid, height);
    };
    const QRect first = layers_.empty() ? QRect() : pixelsNow(*layers_[0]);
    if (stale_ || first.size() != firstSize_ || grid.scale != scale_) {
        stale_ = false;
        firstSize_ = first.size();
        scale_ = grid.scale;
        next_.clear();
        for (const auto& layer : layers_)
            appendBoxes(*layer, pixelsNow(*layer).translated(-first.topLeft()), grid, next_);
        if (next_ != picture_.boxes()) {
            picture_.swapBoxes(next_);
            repaint();
        }
    }
    place(grid, picture_.bounds().translated(first.topLeft()));
}

bool LayerItem::isGliding(SteadyClock::TimePoint now) const {
    return std::any_of(layers_.begin(), layers_.end(),
                       [now](const auto& layer) { return layer->isGliding(now); });
}

void LayerItem::paintPixels(QPainter& painter) {
    painter.translate(-picture_.bounds().topLeft());
    picture_.paint(painter);
}

} // namespace noctra
