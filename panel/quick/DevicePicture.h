#pragma once

#include <array>

#include <QtCore/QRect>
#include <QtGui/QImage>
#include <QtQuick/QQuickItem>

#include "panel/quick/PixelGrid.h"

class QPainter;

namespace noctra {

/// A picture in device pixels that lies on its parent's pixel grid, so that it is sharp at every
/// scale factor. (A QQuickPaintedItem is as large as a whole number of points, which at 1.25 is
/// not a whole number of pixels.) Moving it does not paint it again.
class DevicePicture : public QQuickItem {
    Q_OBJECT

public:
    explicit DevicePicture(QQuickItem* parent);

    /// Covers `pixels` of `grid`; paints if the size has changed.
    void place(const PixelGrid& grid, const QRect& pixels);
    void repaint();

    /// How many times it has been painted.
    [[nodiscard]] int paintCount() const { return paintCount_; }

protected:
    /// One unit is one device pixel, the origin is the top-left corner of what is covered, and all
    /// of it is transparent.
    virtual void paintPixels(QPainter& painter) = 0;

    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;

private:
    void paintInto(QImage& image);

    QSize pixels_;
    bool stale_ = true;
    int paintCount_ = 0;
    /// In turn: the scene graph keeps the one that it shows. As large as they have had to be.
    std::array<QImage, 2> images_;
    std::size_t shown_ = 0;
};

} // namespace noctra
