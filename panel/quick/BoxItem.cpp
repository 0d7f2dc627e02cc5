#include "panel/quick/BoxItem.h"

#include <QtGui/QPainter>

#include "panel/quick/Conversions.h"

namespace noctra {

namespace {

/// Fills `box` from `top` to `bottom`.
void setColors(PixelBox& box, const QColor& top, const QColor& bottom) {
    if (top == bottom)
        box.color = fromQt(top);
    else
        box.gradient = LayerGradient{{fromQt(top), fromQt(bottom)}, {0.0, 1.0}, 2};
}

} // namespace

void BoxPictureItem::show(const PixelGrid& grid, std::vector<PixelBox>& boxes) {
    if (boxes != picture_.boxes()) {
        picture_.swapBoxes(boxes);
        repaint();
    }
    place(grid, picture_.bounds());
}

void BoxPictureItem::paintPixels(QPainter& painter) {
    painter.translate(-picture_.bounds().topLeft());
    picture_.paint(painter);
}

BoxItem::BoxItem(QQuickItem* parent) : GridItem(parent), picture_(new BoxPictureItem(this)) {
    connect(this, &BoxItem::looksChanged, this, &QQuickItem::polish);
}

void BoxItem::arrange() {
    const QRect pixels = grid().box(size());
    boxes_.clear();
    if (!pixels.isEmpty()) {
        appendShadow(shadow2Color_, shadow2Radius_, shadow2X_, shadow2Y_);
        appendShadow(shadowColor_, shadowRadius_, shadowX_, shadowY_);
        PixelBox& fill = boxes_.emplace_back();
        fill.rect = pixels;
        fill.radius = radius_ * grid().scale;
        setColors(fill, topColor_, bottomColor_);
        appendBorder(pixels);
        for (std::size_t i = 0; i < boxes_.size(); ++i)
            if (boxes_[i].kind == PixelBox::Kind::shadow) {
                boxes_[i].first = i + 1;
                boxes_[i].last = boxes_.size();
            }
    }
    picture_->show(grid(), boxes_);
}

void BoxItem::appendShadow(const QColor& color, qreal radius, qreal x, qreal y) {
    if (color.alpha() == 0)
        return;
    PixelBox& shadow = boxes_.emplace_back();
    shadow.kind = PixelBox::Kind::shadow;
    shadow.color = fromQt(color);
    shadow.sigma = radius * grid().scale;
    shadow.offset = {grid().edge(x), grid().edge(y)};
}

void BoxItem::appendBorder(const QRect& box) {
    const int width = grid().length(borderWidth_);
    if (width == 0)
        return;
    const int outside = borderInside_ ? 0 : width / 2;
    PixelBox& border = boxes_.emplace_back();
    border.kind = PixelBox::Kind::border;
    border.rect = box.adjusted(-outside, -outside, outside, outside);
    border.radius = radius_ > 0.0 ? radius_ * grid().scale + outside : 0.0;
    border.width = width;
    setColors(border, borderTopColor_, borderBottomColor_);
}

} // namespace noctra
