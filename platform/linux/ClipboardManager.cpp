#include "platform/linux/ClipboardManager.h"

#include <QtCore/QAbstractNativeEventFilter>
#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>

#include "platform/linux/Xcb.h"

namespace noctra {

namespace {

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
    const xcb_atom_t manager = internAtom(connection, "CLIPBOARD_MANAGER");
    if (selectionOwner(connection, manager) == XCB_NONE)
        return;
    const xcb_window_t window = xcb_generate_id(connection);
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    xcb_create_window(connection, 0, window, screen->root, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    const auto [target, property] = internAtoms(connection, {"SAVE_TARGETS", "NOCTRA_SELECTION"});
    xcb_convert_selection(connection, window, manager, target, property, XCB_CURRENT_TIME);
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
