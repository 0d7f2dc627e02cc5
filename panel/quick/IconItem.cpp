#include "panel/quick/IconItem.h"

#include <algorithm>
#include <cmath>

#include <QtGui/QPainter>
#include <QtQuick/QQuickWindow>

#include "platform/qt/pdf/PdfIcon.h"

namespace noctra {

namespace {

constexpr double usualSize = 18.0; ///< points; tells whether a file can be drawn before it has room

} // namespace

IconItem::IconItem(QQuickItem* parent) : QQuickPaintedItem(parent) {}

void IconItem::setPath(const QString& path) {
    if (path_ == path)
        return;
    path_ = path;
    if (isComponentComplete())
        decode();
    emit pathChanged();
}

void IconItem::setColor(const QColor& color) {
    if (color_ == color)
        return;
    color_ = color;
    update();
    emit colorChanged();
}

void IconItem::componentComplete() {
    QQuickPaintedItem::componentComplete();
    if (!isAvailable())
        decode(); // else anchors have given it its size just now, and that has drawn it
}

void IconItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickPaintedItem::geometryChange(newGeometry, oldGeometry);
    fitIcon();
}

void IconItem::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickPaintedItem::itemChange(change, data);
    if (change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged)
        fitIcon();
}

IconItem::Fit IconItem::wantedFit() const {
    const double side = std::min(width(), height());
    return {.points = side > 0.0 ? side : usualSize,
            .ratio = window() != nullptr ? window()->effectiveDevicePixelRatio() : 1.0};
}

void IconItem::fitIcon() {
    if (isComponentComplete() && wantedFit() != fit_)
        decode();
}

void IconItem::decode() {
    const bool wasAvailable = isAvailable();
    fit_ = wantedFit();
    icon_ = path_.isEmpty() ? QImage() : drawPdfIcon(path_, fit_.points, fit_.ratio);
    update();
    if (isAvailable() != wasAvailable)
        emit availableChanged();
}

void IconItem::paint(QPainter* painter) {
    if (icon_.isNull())
        return;
    // On whole pixels, or it would blur.
    const auto snapped = [this](double room, double side) {
        return std::round((room - side) / 2.0 * fit_.ratio) / fit_.ratio;
    };
    const QSizeF size = icon_.deviceIndependentSize();
    const QPointF corner(snapped(width(), size.width()), snapped(height(), size.height()));
    painter->drawImage(corner, color_.isValid() ? tinted(icon_, color_) : icon_);
}

} // namespace noctra
