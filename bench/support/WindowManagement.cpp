#include "bench/support/WindowManagement.h"

namespace noctra::desktop {

void WindowManagement::askToClose(const std::string& title) const {
    const std::optional<xcb_window_t> window = find(title);
    if (!window)
        throw std::runtime_error("there is no window " + title);
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = *window;
    event.type = connection_.atom("WM_PROTOCOLS");
    event.data.data32[0] = connection_.atom("WM_DELETE_WINDOW");
    connection_.check(xcb_send_event_checked(connection_.get(), 0, *window, XCB_EVENT_MASK_NO_EVENT,
                                             reinterpret_cast<const char*>(&event)),
                      "close request");
}

std::optional<Box> WindowManagement::placeOf(const std::string& title) const {
    const std::optional<xcb_window_t> window = find(title);
    if (!window)
        return std::nullopt;
    const XConnection::XReply<xcb_get_geometry_reply_t> size{xcb_get_geometry_reply(
        connection_.get(), xcb_get_geometry(connection_.get(), *window), nullptr)};
    const XConnection::XReply<xcb_translate_coordinates_reply_t> corner{
        xcb_translate_coordinates_reply(
            connection_.get(),
            xcb_translate_coordinates(connection_.get(), *window, connection_.root(), 0, 0),
            nullptr)};
    if (!size || !corner)
        return std::nullopt; // it has just gone
    return Box{corner->dst_x, corner->dst_y, size->width, size->height};
}

std::optional<xcb_window_t> WindowManagement::find(const std::string& title) const {
    return findBelow(connection_.root(), title);
}

/// Also in the frame that a window manager has put it in.
std::optional<xcb_window_t> WindowManagement::findBelow(xcb_window_t parent,
                                                        const std::string& title) const {
    const XConnection::XReply<xcb_query_tree_reply_t> tree{xcb_query_tree_reply(
        connection_.get(), xcb_query_tree(connection_.get(), parent), nullptr)};
    if (!tree)
        return std::nullopt; // it has just gone
    const xcb_window_t* windows = xcb_query_tree_children(tree.get());
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
        if (!isShown(windows[i]))
            continue;
        if (titleOf(windows[i]) == title)
            return windows[i];
        if (const auto inside = findBelow(windows[i], title))
            return inside;
    }
    return std::nullopt;
}

bool WindowManagement::isShown(xcb_window_t window) const {
    const XConnection::XReply<xcb_get_window_attributes_reply_t> attributes{
        xcb_get_window_attributes_reply(
            connection_.get(), xcb_get_window_attributes(connection_.get(), window), nullptr)};
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

std::string WindowManagement::titleOf(xcb_window_t window) const {
    constexpr std::uint32_t longest = 64; // in units of 4 bytes
    const XConnection::XReply<xcb_get_property_reply_t> title{xcb_get_property_reply(
        connection_.get(),
        xcb_get_property(connection_.get(), 0, window, XCB_ATOM_WM_NAME, XCB_ATOM_ANY, 0, longest),
        nullptr)};
    if (!title)
        return {};
    const auto size = static_cast<std::size_t>(xcb_get_property_value_length(title.get()));
    return {static_cast<const char*>(xcb_get_property_value(title.get())), size};
}

} // namespace noctra::desktop
