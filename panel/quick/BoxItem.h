#pragma once

#include <vector>

#include <QtGui/QColor>
#include <QtQml/qqmlregistration.h>

#include "panel/quick/BoxPicture.h"
#include "panel/quick/DevicePicture.h"
#include "panel/quick/GridItem.h"

namespace noctra {

/// The picture of a list of boxes.
class BoxPictureItem : public DevicePicture {
    Q_OBJECT

public:
    explicit BoxPictureItem(QQuickItem* parent) : DevicePicture(parent) {}

    /// Shows `boxes`, whose origin is pixel (0, 0) of `grid`, and leaves some others there.
    void show(const PixelGrid& grid, std::vector<PixelBox>& boxes);

protected:
    void paintPixels(QPainter& painter) override;

private:
    BoxPicture picture_;
};

/// A box with round corners, a vertical gradient, a border and up to two shadows or glows, which
/// are drawn outside the item. Lengths in points; a radius of half the size makes a circle.
class BoxItem : public GridItem {
    Q_OBJECT
    Q_PROPERTY(QColor topColor MEMBER topColor_ NOTIFY looksChanged)
    Q_PROPERTY(QColor bottomColor MEMBER bottomColor_ NOTIFY looksChanged)
    Q_PROPERTY(qreal radius MEMBER radius_ NOTIFY looksChanged)
    Q_PROPERTY(qreal borderWidth MEMBER borderWidth_ NOTIFY looksChanged)
    Q_PROPERTY(QColor borderTopColor MEMBER borderTopColor_ NOTIFY looksChanged)
    Q_PROPERTY(QColor borderBottomColor MEMBER borderBottomColor_ NOTIFY looksChanged)
    /// The whole border lies inside the box; else its middle lies on the edge, as far as whole
    /// pixels allow: the odd one is inside.
    Q_PROPERTY(bool borderInside MEMBER borderInside_ NOTIFY looksChanged)
    /// The radius of a shadow is the standard deviation of its blur; y grows downwards.
    Q_PROPERTY(QColor shadowColor MEMBER shadowColor_ NOTIFY looksChanged)
    Q_PROPERTY(qreal shadowRadius MEMBER shadowRadius_ NOTIFY looksChanged)
    Q_PROPERTY(qreal shadowX MEMBER shadowX_ NOTIFY looksChanged)
    Q_PROPERTY(qreal shadowY MEMBER shadowY_ NOTIFY looksChanged)
    /// Behind the first one, and cast by it too.
    Q_PROPERTY(QColor shadow2Color MEMBER shadow2Color_ NOTIFY looksChanged)
    Q_PROPERTY(qreal shadow2Radius MEMBER shadow2Radius_ NOTIFY looksChanged)
    Q_PROPERTY(qreal shadow2X MEMBER shadow2X_ NOTIFY looksChanged)
    Q_PROPERTY(qreal shadow2Y MEMBER shadow2Y_ NOTIFY looksChanged)
    QML_ELEMENT

public:
    explicit BoxItem(QQuickItem* parent = nullptr);

    [[nodiscard]] const BoxPictureItem& picture() const { return *picture_; }

signals:
    void looksChanged();

protected:
    void arrange() override;

private:
    void appendShadow(const QColor& color, qreal radius, qreal x, qreal y);
    void appendBorder(const QRect& box);

    QColor topColor_ = Qt::transparent;
    QColor bottomColor_ = Qt::transparent;
    qreal radius_ = 0.0;
    qreal borderWidth_ = 0.0;
    QColor borderTopColor_ = Qt::transparent;
    QColor borderBottomColor_ = Qt::transparent;
    bool borderInside_ = false;
    QColor shadowColor_ = Qt::transparent;
    qreal shadowRadius_ = 0.0;
    qreal shadowX_ = 0.0;
    qreal shadowY_ = 0.0;
    QColor shadow2Color_ = Qt::transparent;
    qreal shadow2Radius_ = 0.0;
    qreal shadow2X_ = 0.0;
    qreal shadow2Y_ = 0.0;

    BoxPictureItem* const picture_;
    std::vector<PixelBox> boxes_;
};

} // namespace noctra
