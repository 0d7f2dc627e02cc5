#include "platform/linux/tray/QtX11.h"

#include <cmath>

#include <QtGui/QCursor>
#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>

#include "platform/linux/Xcb.h"

namespace noctra {

namespace {

int scaled(int distance, double factor) {
    return static_cast<int>(std::lround(distance * factor));
}

} // namespace

xcb_connection_t* qtXConnection() {
    auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 != nullptr ? x11->connection() : nullptr;
}

xcb_window_t rootWindow(xcb_connection_t* connection) {
    if (connection == nullptr)
        return XCB_NONE;
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    return screen != nullptr ? screen->root : XCB_NONE;
}

PixelRect wholeScreen(xcb_connection_t* connection) {
    if (connection == nullptr)
        return {};
    const XcbReply<xcb_get_geometry_reply_t> reply(xcb_get_geometry_reply(
        connection, xcb_get_geometry(connection, rootWindow(connection)), nullptr));
    return reply ? PixelRect{0, 0, reply->width, reply->height} : PixelRect{};
}

bool isMadeUp(const QScreen& screen) {
    return screen.name().contains(QLatin1Char(':'));
}

PixelRect pixelsOf(const QScreen& screen) {
    const QRect points = screen.geometry();
    const double factor = screen.devicePixelRatio();
    return {points.x(), points.y(), scaled(points.width(), factor),
            scaled(points.height(), factor)};
}

QScreen* screenAt(PixelPoint pixel) {
    for (QScreen* const screen : QGuiApplication::screens())
        if (pixelsOf(*screen).contains(pixel))
            return screen;
    return nullptr;
}

QScreen* screenUnderPointer() {
    if (QScreen* const screen = QGuiApplication::screenAt(QCursor::pos()))
        return screen;
    return QGuiApplication::primaryScreen();
}

PixelRect toPixels(const QRect& points, const QScreen& screen) {
    const PixelPoint corner = toPixels(points.topLeft(), screen);
    const double factor = screen.devicePixelRatio();
    return {corner.x, corner.y, scaled(points.width(), factor), scaled(points.height(), factor)};
}

PixelPoint toPixels(const QPoint& point, const QScreen& screen) {
    const QPoint origin = screen.geometry().topLeft();
    const double factor = screen.devicePixelRatio();
    return {origin.x() + scaled(point.x() - origin.x(), factor),
            origin.y() + scaled(point.y() - origin.y(), factor)};
}

QPoint toPoints(PixelPoint pixel, const QScreen& screen) {
    const QPoint origin = screen.geometry().topLeft();
    const double factor = screen.devicePixelRatio();
    return {origin.x() + scaled(pixel.x - origin.x(), 1.0 / factor),
            origin.y() + scaled(pixel.y - origin.y(), 1.0 / factor)};
}

PixelPoint pointer() {
    const QPoint at = QCursor::pos();
    const QScreen* const screen = screenUnderPointer();
    return screen != nullptr ? toPixels(at, *screen) : PixelPoint{at.x(), at.y()};
}

} // namespace noctra
