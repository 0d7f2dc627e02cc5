#include "platform/linux/XConnection.h"

#include <cstdlib>

#include <poll.h>

namespace noctra {

namespace {

std::string nameOf(const char* displayName) {
    if (displayName == nullptr)
        displayName = std::getenv("DISPLAY");
    return displayName != nullptr ? displayName : "";
}

RandrConnection failed(std::string reason) {
    RandrConnection none;
    none.description = std::move(reason);
    return none;
}

} // namespace

std::string connectionError(xcb_connection_t* connection) {
    switch (xcb_connection_has_error(connection)) {
    case 0:
        return {};
    case XCB_CONN_ERROR:
        return "the connection broke";
    case XCB_CONN_CLOSED_PARSE_ERR:
        return "malformed display name";
    case XCB_CONN_CLOSED_INVALID_SCREEN:
        return "no such screen";
    default:
        return "out of resources";
    }
}

bool isBroken(xcb_connection_t* connection) {
    pollfd socket{xcb_get_file_descriptor(connection), 0, 0};
    return xcb_connection_has_error(connection) != 0 || ::poll(&socket, 1, 0) > 0;
}

RandrConnection connectToRandr(const char* displayName) {
    const std::string name = nameOf(displayName);
    if (name.empty())
        return failed("DISPLAY is not set");

    RandrConnection connection;
    int screenNumber = 0;
    connection.xcb.reset(xcb_connect(displayName, &screenNumber));
    xcb_connection_t* xcb = connection.xcb.get();
    if (const std::string error = connectionError(xcb); !error.empty())
        return failed("cannot connect to X display " + name + ": " + error);

    auto screen = xcb_setup_roots_iterator(xcb_get_setup(xcb));
    for (; screen.rem > 1 && screenNumber > 0; --screenNumber)
        xcb_screen_next(&screen);
    connection.root = screen.data->root;

    const xcb_query_extension_reply_t* randr = xcb_get_extension_data(xcb, &xcb_randr_id);
    if (randr == nullptr || randr->present == 0)
        return failed("X display " + name + " has no RandR extension");
    connection.firstEvent = randr->first_event;
    const XcbReply<xcb_randr_query_version_reply_t> version(
        xcb_randr_query_version_reply(xcb, xcb_randr_query_version(xcb, 1, 5), nullptr));
    if (!version || (version->major_version == 1 && version->minor_version < 3))
        return failed("X display " + name + " has no RandR 1.3");
    connection.description = "X display " + name + ", RandR " +
                             std::to_string(version->major_version) + "." +
                             std::to_string(version->minor_version);
    return connection;
}

} // namespace noctra
