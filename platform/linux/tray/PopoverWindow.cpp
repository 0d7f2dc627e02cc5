#include "platform/linux/tray/PopoverWindow.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>
#include <vector>

#include "platform/linux/Xcb.h"
#include "platform/linux/tray/QtX11.h"

namespace noctra {

namespace {

constexpr std::uint32_t allWorkspaces = 0xFFFFFFFF;
/// What the sender of a message says it is (EWMH). Window managers obey a pager where they may only
/// note the wish of a program.
constexpr std::uint32_t pager = 2;

void tellWindowManager(xcb_connection_t* xcb, xcb_window_t window, std::string_view type,
                       std::array<std::uint32_t, 5> data) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = internAtom(xcb, type);
    std::copy(data.begin(), data.end(), std::begin(message.data.data32));
    xcb_send_event(xcb, 0, rootWindow(xcb),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
}

xcb_get_property_cookie_t ask(xcb_connection_t* xcb, xcb_window_t window, xcb_atom_t property,
                              xcb_atom_t type) {
    constexpr std::uint32_t most = 64;
    return xcb_get_property(xcb, 0, window, property, type, 0, most);
}

} // namespace

void announcePopover(std::uintptr_t window) {
    xcb_connection_t* const xcb = qtXConnection();
    if (xcb == nullptr)
        return;
    const auto states = internAtoms(
        xcb, {"_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER", "_NET_WM_STATE_STICKY"});
    xcb_change_property(xcb, XCB_PROP_MODE_APPEND, static_cast<xcb_window_t>(window),
                        internAtom(xcb, "_NET_WM_STATE"), XCB_ATOM_ATOM, 32, states.size(),
                        states.data());
}

void bringPopover(std::uintptr_t window, PixelPoint corner) {
    xcb_connection_t* const xcb = qtXConnection();
    if (xcb == nullptr)
        return;
    const auto id = static_cast<xcb_window_t>(window);
    tellWindowManager(xcb, id, "_NET_WM_DESKTOP", {allWorkspaces, pager});
    movePopover(window, corner);
    tellWindowManager(xcb, id, "_NET_ACTIVE_WINDOW", {pager, XCB_CURRENT_TIME});
    xcb_flush(xcb);
}

void movePopover(std::uintptr_t window, PixelPoint corner) {
    xcb_connection_t* const xcb = qtXConnection();
    if (xcb == nullptr)
        return;
    const std::array<std::int32_t, 2> values{corner.x, corner.y};
    xcb_configure_window(xcb, static_cast<xcb_window_t>(window),
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, values.data());
}

bool isBeforeTheEyes(std::uintptr_t window) {
    xcb_connection_t* const xcb = qtXConnection();
    if (xcb == nullptr)
        return true;
    const auto id = static_cast<xcb_window_t>(window);
    const xcb_window_t root = rootWindow(xcb);
    const auto [workspace, current, states, hidden, sticky] =
        internAtoms(xcb, {"_NET_WM_DESKTOP", "_NET_CURRENT_DESKTOP", "_NET_WM_STATE",
                          "_NET_WM_STATE_HIDDEN", "_NET_WM_STATE_STICKY"});

    const auto askAttributes = xcb_get_window_attributes(xcb, id);
    const auto askStates = ask(xcb, id, states, XCB_ATOM_ATOM);
    const auto askWorkspace = ask(xcb, id, workspace, XCB_ATOM_CARDINAL);
    const auto askCurrent = ask(xcb, root, current, XCB_ATOM_CARDINAL);
    const XcbReply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(xcb, askAttributes, nullptr));
    const auto itsStates = numbersIn(xcb, askStates);
    const auto itsWorkspace = numbersIn(xcb, askWorkspace);
    const auto currentWorkspace = numbersIn(xcb, askCurrent);

    const bool isViewable = attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
    const auto is = [&](xcb_atom_t state) {
        return std::find(itsStates.begin(), itsStates.end(), state) != itsStates.end();
    };
    const bool isElsewhere = !is(sticky) && !itsWorkspace.empty() && !currentWorkspace.empty() &&
                             itsWorkspace.front() != allWorkspaces &&
                             itsWorkspace.front() != currentWorkspace.front();
    return isViewable && !is(hidden) && !isElsewhere;
}

} // namespace noctra
