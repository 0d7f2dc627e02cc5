#include "panel/Layer.h"

#include <algorithm>
#include <utility>

#include "panel/LayerTransaction.h"

namespace noctra {

Layer::~Layer() {
    for (const auto& sublayer : sublayers_)
        sublayer->superlayer_ = nullptr;
}

void Layer::setFrame(const Rect& frame) {
    if (frame == frame_)
        return;
    if (const LayerTransaction* transaction = root().transaction_;
        transaction != nullptr && !transaction->disableActions())
        glide_ = Glide{presentationFrame(transaction->beginTime()), transaction->beginTime(),
                       transaction->animationDuration(), transaction->animationTimingFunction()};
    else
        glide_.reset();
    frame_ = frame;
    tell(LayerChange::geometry);
}

Rect Layer::presentationFrame(SteadyClock::TimePoint now) const {
    if (!isGliding(now))
        return frame_;
    const double done = glide_->curve(Seconds(now - glide_->start) / glide_->duration);
    const auto between = [done](double from, double to) {
        return from + (to - from) * done;
    };
    return {between(glide_->from.x, frame_.x), between(glide_->from.y, frame_.y),
            between(glide_->from.width, frame_.width), between(glide_->from.height, frame_.height)};
}

bool Layer::isGliding(SteadyClock::TimePoint now) const {
    return glide_ && Seconds(now - glide_->start) < glide_->duration;
}

void Layer::setLooks(LayerLooks looks) {
    if (looks == looks_)
        return;
    looks_ = std::move(looks);
    tell(LayerChange::looks);
}

void Layer::setBackgroundColor(const Color& color) {
    if (color == looks_.backgroundColor)
        return;
    looks_.backgroundColor = color;
    tell(LayerChange::looks);
}

void Layer::addSublayer(std::shared_ptr<Layer> layer) {
    layer->removeFromSuperlayer();
    insertSublayer(std::move(layer), sublayers_.size());
}

void Layer::insertSublayer(std::shared_ptr<Layer> layer, std::size_t index) {
    layer->removeFromSuperlayer();
    layer->superlayer_ = this;
    const auto place = static_cast<std::ptrdiff_t>(std::min(index, sublayers_.size()));
    sublayers_.insert(sublayers_.begin() + place, std::move(layer));
    tell(LayerChange::tree);
}

void Layer::removeFromSuperlayer() {
    if (superlayer_ == nullptr)
        return;
    Layer& above = *std::exchange(superlayer_, nullptr);
    const auto self = std::find_if(above.sublayers_.begin(), above.sublayers_.end(),
                                   [this](const auto& sublayer) { return sublayer.get() == this; });
    const std::shared_ptr<Layer> alive = std::move(*self); // it may be the last one to hold us
    above.sublayers_.erase(self);
    above.tell(LayerChange::tree);
}

const Layer& Layer::root() const {
    const Layer* layer = this;
    while (layer->superlayer_ != nullptr)
        layer = layer->superlayer_;
    return *layer;
}

void Layer::tell(LayerChange change) const {
    if (LayerHost* host = root().host_)
        host->layerChanged(*this, change);
}

} // namespace noctra
