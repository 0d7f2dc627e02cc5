#include "panel/quick/FaderItem.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

namespace noctra {

FaderItem::FaderItem(QQuickItem* parent)
    : GridItem(parent), backdrop_(new LayerItem(this)), fill_(new LayerItem(this)),
      cap_(new LayerItem(this)), ticker_([this] {
          polish();
          ticker_.setRunning(isGliding()); // one frame more, at the place where it ends
      }) {
    setAcceptedMouseButtons(Qt::LeftButton);
    setActiveFocusOnTab(true);
    setKeepMouseGrab(true);
}

FaderItem::~FaderItem() {
    if (view_ == nullptr)
        return;
    view_->layer()->setHost(nullptr);
    view_->cancelDrag(); // else the panel would wait for the end of the drag
}

void FaderItem::setSource(FaderSource* source) {
    if (source == source_)
        return;
    if (source_)
        disconnect(source_, nullptr, this, nullptr);
    dropView();
    source_ = source;
    if (source_) {
        connect(source_, &FaderSource::rendered, this, &FaderItem::render);
        connect(source_, &QObject::destroyed, this, &FaderItem::dropView);
    }
    render();
    emit sourceChanged();
}

void FaderItem::setAnimates(bool animates) {
    if (animates == animates_)
        return;
    animates_ = animates;
    ticker_.setRunning(isGliding());
    polish();
    emit animatesChanged();
}

void FaderItem::setValue(double value) {
    if (!std::isnan(value))
        setByUser(nearestHundredth(std::clamp(value, 0.0, 1.0)), true);
}

void FaderItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    GridItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        render();
}

void FaderItem::render() {
    if (!source_ || width() <= 0.0 || height() <= 0.0)
        return;
    const StudioFader::Body body = source_->fader().body(width(), height());
    const bool isNew = view_ == nullptr;
    if (isNew)
        makeView(body.slider);
    if (isNew || view_->bounds() != body.frame) {
        view_->setSize(body.frame.width, body.frame.height);
        view_->layout();
        polish();
    }
    body.slider.updateNSView(*view_);
    announce();
}

void FaderItem::makeView(const NativeSliderView& slider) {
    view_ = slider.makeNSView(source_->mainQueue(), source_->clock());
    view_->layer()->setHost(this);
    std::vector<std::shared_ptr<Layer>> backdrop{view_->trackLayer, view_->trackInnerLayer};
    backdrop.insert(backdrop.end(), view_->tickLayers.begin(), view_->tickLayers.end());
    backdrop_->setLayers(std::move(backdrop));
    fill_->setLayers({view_->fillLayer});
    cap_->setLayers({view_->capLayer});
}

void FaderItem::dropView() {
    if (view_ == nullptr)
        return;
    ticker_.stop();
    for (LayerItem* item : {backdrop_, fill_, cap_})
        item->setLayers({});
    view_->layer()->setHost(nullptr);
    view_->cancelDrag();
    view_.reset();
    polish();
    announce();
}

void FaderItem::layerChanged(const Layer& layer, LayerChange change) {
    const Layer* top = &layer;
    while (top->superlayer() != nullptr && top->superlayer() != view_->layer())
        top = top->superlayer();
    for (LayerItem* item : {fill_, cap_, backdrop_})
        if (item->shows(*top)) {
            item->layerChanged(layer, change);
            break;
        }
    if (change == LayerChange::geometry)
        ticker_.setRunning(isGliding());
    polish();
}

void FaderItem::arrange() {
    std::optional<SteadyClock::TimePoint> now;
    if (animates_ && source_)
        now = source_->clock().now();
    const int height = grid().length(this->height());
    for (LayerItem* item : {backdrop_, fill_, cap_})
        item->arrange(grid(), height, now);
}

bool FaderItem::isGliding() const {
    if (!animates_ || !source_)
        return false;
    const SteadyClock::TimePoint now = source_->clock().now();
    return fill_->isGliding(now) || cap_->isGliding(now);
}

void FaderItem::announce() {
    const Shown before = shown_;
    shown_ = view_ ? Shown{view_->isDragging, view_->currentValue, view_->minimumValue} : Shown();
    if (shown_.minimum != before.minimum)
        emit minimumValueChanged();
    if (shown_.value != before.value)
        emit valueChanged();
    if (shown_.dragging != before.dragging)
        emit draggingChanged();
}

} // namespace noctra
