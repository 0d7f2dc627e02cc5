#include "panel/quick/GridItem.h"

#include <QtQuick/QQuickWindow>

namespace noctra {

GridItem::GridItem(QQuickItem* parent) : QQuickItem(parent) {
    followFrames(window());
}

void GridItem::updatePolish() {
    takeGrid();
    arrange();
}

void GridItem::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemSceneChange)
        followFrames(data.window);
    if (change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged)
        polish();
}

void GridItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        polish();
}

void GridItem::followFrames(QQuickWindow* window) {
    disconnect(frames_);
    // Qt does not tell an item that one of its ancestors has moved.
    if (window != nullptr)
        frames_ = connect(window, &QQuickWindow::afterAnimating, this, [this] {
            if (isVisible() && takeGrid())
                arrange();
        });
}

bool GridItem::takeGrid() {
    if (window() == nullptr)
        return false;
    PixelGrid grid{.scale = window()->effectiveDevicePixelRatio(), .corner = {}};
    const QPointF here = mapToScene(QPointF());
    grid.corner = QPointF(grid.edge(here.x()), grid.edge(here.y())) / grid.scale - here;
    if (grid == grid_)
        return false;
    grid_ = grid;
    return true;
}

} // namespace noctra
