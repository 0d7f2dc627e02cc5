#pragma once

#include <cstdint>

#include <QtCore/QPoint>
#include <QtCore/QRect>
#include <xcb/xcb.h>

#include "platform/linux/tray/PixelRect.h"

class QScreen;

namespace noctra {

// Where Qt and the X server meet. Main thread; needs a QGuiApplication.
//
// The X server counts pixels. Qt counts points: a screen's top left corner is where the X server
// has it, and from there on a point is as many pixels as the screen's factor says.

/// Qt's own connection; null where Qt does not run on an X server.
[[nodiscard]] xcb_connection_t* qtXConnection();
/// XCB_NONE where there is no connection.
[[nodiscard]] xcb_window_t rootWindow(xcb_connection_t* connection);
/// The whole X screen as it is now; empty where the server does not answer.
[[nodiscard]] PixelRect wholeScreen(xcb_connection_t* connection);

/// Whether Qt has made the screen up, since no output of the X server is on. It is then called like
/// the X display.
[[nodiscard]] bool isMadeUp(const QScreen& screen);
[[nodiscard]] PixelRect pixelsOf(const QScreen& screen);
/// The screen that holds the pixel; null where it is on none.
[[nodiscard]] QScreen* screenAt(PixelPoint pixel);
/// The screen under the pointer, else the primary one, else null.
[[nodiscard]] QScreen* screenUnderPointer();

[[nodiscard]] PixelRect toPixels(const QRect& points, const QScreen& screen);
[[nodiscard]] PixelPoint toPixels(const QPoint& point, const QScreen& screen);
[[nodiscard]] QPoint toPoints(PixelPoint pixel, const QScreen& screen);

/// Where the pointer is.
[[nodiscard]] PixelPoint pointer();

} // namespace noctra
