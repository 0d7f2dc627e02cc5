#include "panel/quick/GlowText.h"

#include <algorithm>
#include <cmath>

#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>

#include "panel/quick/Conversions.h"

namespace noctra {

namespace {

void clear(QImage& mask, const QSize& size) {
    if (mask.size() != size)
        mask = QImage(size, QImage::Format_Alpha8);
    mask.fill(0);
}

} // namespace

void GlowTextPicture::arrange(const PixelGrid& grid, const QSizeF& box) {
    const QRect pixels = grid.box(box);
    const bool glows = shown_.glowColor.alpha() > 0;
    const int bleed = glows ? SoftShadow::bleed(shown_.glowRadius * grid.scale) : 0;
    if (grid.scale != grid_.scale || box != box_ || bleed != bleed_)
        repaint();
    grid_ = grid;
    box_ = box;
    bleed_ = bleed;
    place(grid, pixels.isEmpty() ? QRect() : pixels.adjusted(-bleed, -bleed, bleed, bleed));
}

void GlowTextPicture::paintPixels(QPainter& painter) {
    drawMask();
    if (bleed_ > 0) {
        clear(glow_, text_.size());
        std::copy_n(text_.constBits(), text_.sizeInBytes(), glow_.bits());
        shadow_.blur(glow_, shown_.glowRadius * grid_.scale);
        Color glow = fromQt(shown_.glowColor);
        glow.alpha *= shown_.color.alphaF();
        painter.drawImage(0, 0, shadow_.tinted(glow_, glow));
    }
    painter.drawImage(0, 0, shadow_.tinted(text_, fromQt(shown_.color)));
}

void GlowTextPicture::drawMask() {
    const QRect box = grid_.box(box_).translated(bleed_, bleed_);
    clear(text_, box.adjusted(-bleed_, -bleed_, bleed_, bleed_).size());
    const QFontMetricsF metrics(shown_.font);
    const auto snapped = [this](double points) {
        return grid_.edge(points) / grid_.scale;
    };
    const QPointF start(
        snapped((box_.width() - metrics.horizontalAdvance(shown_.text)) / 2.0),
        snapped((box_.height() - metrics.ascent() - metrics.descent()) / 2.0 + metrics.ascent()));

    QPainter painter(&text_);
    painter.setClipRect(box);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.translate(box.topLeft());
    painter.scale(grid_.scale, grid_.scale);
    painter.setFont(shown_.font);
    painter.setPen(Qt::white);
    painter.drawText(start, shown_.text);
}

GlowText::GlowText(QQuickItem* parent)
    : GridItem(parent), picture_(new GlowTextPicture(this, shown_)) {
    measure();
}

void GlowText::setText(const QString& text) {
    if (text == shown_.text)
        return;
    shown_.text = text;
    measure();
    show();
    emit textChanged();
}

void GlowText::setFont(const QFont& font) {
    if (font == shown_.font)
        return;
    shown_.font = font;
    measure();
    show();
    emit fontChanged();
}

void GlowText::setColor(const QColor& color) {
    if (color == shown_.color)
        return;
    shown_.color = color;
    show();
    emit looksChanged();
}

void GlowText::setGlowColor(const QColor& color) {
    if (color == shown_.glowColor)
        return;
    shown_.glowColor = color;
    show();
    emit looksChanged();
}

void GlowText::setGlowRadius(qreal radius) {
    if (radius == shown_.glowRadius)
        return;
    shown_.glowRadius = radius;
    show();
    emit looksChanged();
}

void GlowText::arrange() {
    picture_->arrange(grid(), size());
}

void GlowText::measure() {
    const QFontMetricsF metrics(shown_.font);
    setImplicitSize(std::ceil(metrics.horizontalAdvance(shown_.text)), std::ceil(metrics.height()));
}

void GlowText::show() {
    picture_->repaint();
    polish(); // the glow may need another room
}

} // namespace noctra
