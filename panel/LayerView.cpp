#include "panel/LayerView.h"

namespace noctra {

void LayerView::setWantsLayer(bool wantsLayer) {
    if (wantsLayer == (layer_ != nullptr))
        return;
    layer_ = wantsLayer ? std::make_shared<Layer>() : nullptr;
}

void LayerView::layout() {
    if (layer_)
        layer_->setFrame(bounds_);
}

} // namespace noctra
