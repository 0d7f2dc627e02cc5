#pragma once

#include <QtQuick/QQuickItem>

#include "panel/quick/PixelGrid.h"

namespace noctra {

/// An item that lays its pictures out on the window's device pixels, wherever it is moved to. It is
/// neither turned nor scaled.
class GridItem : public QQuickItem {
    Q_OBJECT

public:
    explicit GridItem(QQuickItem* parent = nullptr);

    [[nodiscard]] const PixelGrid& grid() const { return grid_; }

protected:
    /// Called before a frame is drawn when the grid, the size, or what was polished has changed.
    virtual void arrange() = 0;

    void updatePolish() override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;

private:
    void followFrames(QQuickWindow* window);
    /// Whether it is another one than before.
    bool takeGrid();

    PixelGrid grid_;
    QMetaObject::Connection frames_;
};

} // namespace noctra
