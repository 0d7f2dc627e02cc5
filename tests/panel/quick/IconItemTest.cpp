#include "panel/quick/IconItem.h"

#include <QtGui/QImage>
#include <QtQuick/QQuickWindow>
#include <QtTest/QSignalSpy>

#include <gtest/gtest.h>

namespace noctra {

namespace {

QString iconPath(const char* name) {
    return QStringLiteral(NOCTRA_SOURCE_DIR "/resources/icons/%1.pdf").arg(name);
}

struct IconItemTest : testing::Test {
    QQuickWindow window;
    IconItem item;

    IconItemTest() {
        window.setColor(Qt::black);
        window.resize(60, 40);
        item.setParentItem(window.contentItem());
        item.setSize({50.0, 22.0});
        window.show();
    }
    ~IconItemTest() override { item.setParentItem(nullptr); }
};

} // namespace

TEST_F(IconItemTest, IsDrawnInTheMiddleOfItsRoomAndFollowsColourAndSize) {
    item.setPath(iconPath("power"));
    item.setColor(Qt::white);
    ASSERT_TRUE(item.isAvailable());
    QImage shot = window.grabWindow();
    ASSERT_EQ(shot.size(), QSize(60, 40));
    EXPECT_EQ(shot.pixelColor(25, 5), QColor(Qt::white)) << "the bar of the power symbol";
    EXPECT_EQ(shot.pixelColor(25, 30), QColor(Qt::black));
    EXPECT_EQ(shot.pixelColor(8, 11), QColor(Qt::black)) << "beside the square";

    item.setColor(QColor(0, 0, 255));
    EXPECT_EQ(window.grabWindow().pixelColor(25, 5), QColor(0, 0, 255));
    item.setSize({18.0, 18.0});
    shot = window.grabWindow();
    EXPECT_EQ(shot.pixelColor(8, 5), QColor(0, 0, 255)) << "on whole pixels";
    EXPECT_EQ(shot.pixelColor(7, 5), QColor(Qt::black));
}

TEST_F(IconItemTest, IsNothingWithoutAFileThatCanBeDrawn) {
    const QSignalSpy changes(&item, &IconItem::availableChanged);
    item.setColor(Qt::white);
    for (const QString& path : {QString(), QStringLiteral("/nowhere.pdf"),
                                QStringLiteral(NOCTRA_SOURCE_DIR "/LICENSE")}) {
        item.setPath(path);
        EXPECT_FALSE(item.isAvailable());
        EXPECT_EQ(window.grabWindow().pixelColor(25, 5), QColor(Qt::black));
    }
    EXPECT_EQ(changes.size(), 0);
    item.setPath(iconPath("gear"));
    EXPECT_TRUE(item.isAvailable());
    item.setPath({});
    EXPECT_FALSE(item.isAvailable());
    EXPECT_EQ(changes.size(), 2);
    EXPECT_EQ(window.grabWindow().pixelColor(25, 5), QColor(Qt::black));
}

} // namespace noctra
