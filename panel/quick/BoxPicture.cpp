#include "panel/quick/BoxPicture.h"

#include <algorithm>
#include <utility>

#include <QtGui/QBrush>
#include <QtGui/QLinearGradient>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include "panel/quick/Conversions.h"

namespace noctra {

namespace {

QBrush gradientBrush(const LayerGradient& gradient, const QRect& rect) {
    QLinearGradient brush(0, rect.top(), 0, rect.top() + rect.height());
    for (std::size_t i = 0; i < gradient.stops; ++i)
        brush.setColorAt(gradient.locations[i], toQt(gradient.colors[i]));
    return brush;
}

QPainterPath pathOf(const PixelBox& box) {
    QPainterPath path;
    path.addRoundedRect(box.rect, box.radius, box.radius);
    if (box.kind == PixelBox::Kind::border) {
        const int w = box.width;
        const double radius = std::max(0.0, box.radius - w);
        path.addRoundedRect(box.rect.adjusted(w, w, -w, -w), radius, radius);
    }
    return path; // odd-even: the inner rectangle is a hole
}

Color opacityOf(const Color& color) {
    return colors::black.withAlpha(color.alpha);
}

/// What counts for the shadow of `box`: its colours do not.
PixelBox shapeOf(PixelBox box) {
    box.color = opacityOf(box.color);
    if (box.gradient)
        for (Color& color : box.gradient->colors)
            color = opacityOf(color);
    return box;
}

QImage alphaOf(const QImage& picture) {
    return picture.convertToFormat(QImage::Format_Alpha8);
}

} // namespace

QRect BoxPicture::areaOf(const PixelBox& box) const {
    if (box.kind != PixelBox::Kind::shadow)
        return box.rect;
    QRect area;
    for (std::size_t i = box.first; i < box.last; ++i)
        area |= areaOf(boxes_[i]);
    const int bleed = area.isEmpty() ? 0 : SoftShadow::bleed(box.sigma);
    return area.adjusted(-bleed, -bleed, bleed, bleed).translated(box.offset);
}

QRect BoxPicture::bounds() const {
    QRect bounds;
    for (const PixelBox& box : boxes_)
        bounds |= areaOf(box);
    return bounds;
}

void BoxPicture::paint(QPainter& painter) {
    masks_.resize(boxes_.size());
    for (std::size_t i = 0; i < boxes_.size(); ++i)
        paintBox(painter, i);
}

void BoxPicture::paintBox(QPainter& painter, std::size_t index) {
    const PixelBox& box = boxes_[index];
    if (box.kind == PixelBox::Kind::shadow) {
        const Mask& mask = maskOf(index);
        painter.drawImage(mask.area.topLeft() + box.offset, shadow_.tinted(mask.image, box.color));
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing, box.radius > 0.0);
    const QPainterPath path = pathOf(box);
    if (box.color.alpha > 0.0)
        painter.fillPath(path, toQt(box.color));
    if (box.gradient)
        painter.fillPath(path, gradientBrush(*box.gradient, box.rect));
}

BoxPicture::Mask& BoxPicture::maskOf(std::size_t shadow) {
    const PixelBox box = boxes_[shadow];
    std::vector<PixelBox> shape;
    for (std::size_t i = box.first; i < box.last; ++i)
        shape.push_back(shapeOf(boxes_[i]));
    Mask& mask = masks_[shadow];
    if (mask.shape == shape && mask.sigma == box.sigma)
        return mask;

    mask.area = areaOf(box).translated(-box.offset);
    QImage picture(mask.area.size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    if (!picture.isNull()) {
        QPainter painter(&picture);
        painter.translate(-mask.area.topLeft());
        for (std::size_t i = box.first; i < box.last; ++i)
            paintBox(painter, i);
    }
    mask.image = alphaOf(picture);
    shadow_.blur(mask.image, box.sigma);
    mask.sigma = box.sigma;
    mask.shape = std::move(shape);
    return mask;
}

} // namespace noctra
