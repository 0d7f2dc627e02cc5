#include "platform/linux/ClipboardManager.h"

#include <string_view>

#include <QtCore/QAbstractNativeEventFilter>
#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>

#include "platform/linux/XConnection.h"

namespace noctra {

namespace {

xcb_atom_t atom(xcb_connection_t* connection, std::string_view name) {
    const auto cookie =
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const XcbReply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_NONE);
}

bool hasOwner(xcb_connection_t* connection, xcb_atom_t selection) {
    const XcbReply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, selection), nullptr));
    return reply && reply->owner != XCB_NONE;
}

/// Ends the loop once the answer to a request of `window` has come.
struct AnswerFilter : QAbstractNativeEventFilter {
    const xcb_window_t window;
    QEventLoop& loop;

    AnswerFilter(xcb_window_t window, QEventLoop& loop) : window(window), loop(loop) {
        QCoreApplication::instance()->installNativeEventFilter(this);
    }

    bool nativeEventFilter(const QByteArray&, void* message, qintptr*) override {
        const auto* const event = static_cast<const xcb_selection_notify_event_t*>(message);
        if ((event->response_type & 0x7F) == XCB_SELECTION_NOTIFY && event->requestor == window)
            loop.quit();
        return false;
    }
};

} // namespace

void saveClipboard(xcb_connection_t* connection, Seconds patience) {
    const xcb_atom_t manager = atom(connection, "CLIPBOARD_MANAGER");
    if (!hasOwner(connection, manager))
        return;
    const xcb_window_t window = xcb_generate_id(connection);
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    xcb_create_window(connection, 0, window, screen->root, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_convert_selection(connection, window, manager, atom(connection, "SAVE_TARGETS"),
                          atom(connection, "NOCTRA_SELECTION"), XCB_CURRENT_TIME);
    xcb_flush(connection);

    QEventLoop loop;
    const AnswerFilter filter(window, loop);
    QTimer::singleShot(std::chrono::round<std::chrono::milliseconds>(patience), &loop,
                       &QEventLoop::quit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    xcb_destroy_window(connection, window);
    xcb_flush(connection);
}

} // namespace noctra
