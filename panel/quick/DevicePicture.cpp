#include "panel/quick/DevicePicture.h"

#include <QtGui/QPainter>
#include <QtQuick/QQuickWindow>
#include <QtQuick/QSGImageNode>
#include <QtQuick/QSGTexture>

namespace noctra {

DevicePicture::DevicePicture(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
    setZ(-1.0); // behind what the parent's user puts on it
}

void DevicePicture::place(const PixelGrid& grid, const QRect& pixels) {
    setPosition(grid.position(pixels.topLeft()));
    setSize(grid.size(pixels.size()));
    if (pixels.size() != pixels_) {
        pixels_ = pixels.size();
        repaint();
    }
}

void DevicePicture::repaint() {
    stale_ = true;
    update();
}

QSGNode* DevicePicture::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    if (pixels_.isEmpty()) {
        delete old;
        return nullptr;
    }
    auto* node = static_cast<QSGImageNode*>(old);
    if (node == nullptr) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
        node->setFiltering(QSGTexture::Nearest); // pixel by pixel
        stale_ = true;
    }
    if (stale_) {
        stale_ = false;
        shown_ = (shown_ + 1) % images_.size();
        paintInto(images_[shown_]);
        node->setTexture(window()->createTextureFromImage(images_[shown_],
                                                          QQuickWindow::TextureHasAlphaChannel));
    }
    node->setRect(QRectF(QPointF(), size()));
    node->setSourceRect(QRectF(QPointF(), QSizeF(pixels_)));
    return node;
}

void DevicePicture::paintInto(QImage& image) {
    if (image.width() < pixels_.width() || image.height() < pixels_.height())
        image = QImage(pixels_.expandedTo(image.size()), QImage::Format_ARGB32_Premultiplied);
    ++paintCount_;
    const QRect area(QPoint(), pixels_);
    QPainter painter(&image);
    painter.setClipRect(area);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(area, Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    paintPixels(painter);
}

} // namespace noctra
