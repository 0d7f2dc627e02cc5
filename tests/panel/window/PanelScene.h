#pragma once

#include <memory>

#include <QtCore/QPoint>
#include <QtCore/QRectF>
#include <QtGui/QImage>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>

#include "panel/PanelWindow.h"
#include "platform/linux/FolderResources.h"
#include "platform/qt/QtFonts.h"
#include "tests/panel/SimulatedPanelServices.h"
#include "tests/panel/window/StepDriver.h"

namespace noctra {

/// The panel in its window, over both controllers on the simulated desktop. Time stands still
/// between the calls of `advance`. Whatever the toolkit complains about fails the test.
struct PanelScene : PanelControllers {
    static constexpr Seconds frame{0.01};

    StepDriver driver{desktop.steady};
    QtFonts fonts;
    FolderResources resources;
    PanelServices services;
    std::unique_ptr<PanelWindow> panel;

    PanelScene();
    ~PanelScene() override;

    /// Shows the panel, `height` points of it; it has the keyboard's focus afterwards.
    void open(int height = 540);
    /// Null while there is no scene.
    [[nodiscard]] static QQuickWindow* window();
    /// Does what is due now and shows it.
    void settle();
    /// Lets `time`, a number of frames, pass.
    void advance(Seconds time);

    /// The visible item with that object name; null where there is none.
    [[nodiscard]] static QQuickItem* find(const QString& name);
    /// The same, where there must be one.
    [[nodiscard]] static QQuickItem& item(const QString& name);
    /// What the window's edge is around; points, boxes and pictures are in it.
    [[nodiscard]] static QQuickItem& content();
    [[nodiscard]] static QPoint inWindow(QPoint point);
    /// Of an item.
    [[nodiscard]] static QRectF box(const QString& name);
    /// The model that the panel shows.
    [[nodiscard]] static QObject& model();
    [[nodiscard]] static double sheetLevel() { return model().property("sheetLevel").toDouble(); }
    /// How long the faders' slots are, in points, while the row below has the face that it had when
    /// the panel was opened.
    [[nodiscard]] static double slot() { return box(QStringLiteral("WARMTH")).height() - 40.0; }
    /// The object name of the item that has the keyboard's focus.
    [[nodiscard]] static QString focused();

    void press(QPoint point, Qt::MouseButton button = Qt::LeftButton);
    void release(QPoint point, Qt::MouseButton button = Qt::LeftButton);
    void move(QPoint point);
    void click(QPoint point, Qt::MouseButton button = Qt::LeftButton);
    void click(const QString& name) { click(box(name).center().toPoint()); }
    void wheel(QPoint point, int units);
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    /// Opens the settings and waits until the sheet has come to rest.
    void openSheet();

    [[nodiscard]] static QImage grab();
};

} // namespace noctra
