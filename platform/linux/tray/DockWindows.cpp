#include "platform/linux/tray/DockWindows.h"

#include <algorithm>
#include <span>

#include "platform/linux/Xcb.h"
#include "platform/linux/tray/StrutProperty.h"

namespace noctra {

namespace {

// Levels of windows to look through: a frame, a window in it, the dock, and one to spare.
constexpr int deepest = 4;
// Windows of one level to look at; a desktop that works has far fewer.
constexpr std::size_t mostWindows = 4096;

struct Atoms {
    xcb_atom_t windowType = XCB_ATOM_NONE;
    xcb_atom_t dock = XCB_ATOM_NONE;
    xcb_atom_t strutPartial = XCB_ATOM_NONE;
    xcb_atom_t strut = XCB_ATOM_NONE;
    xcb_atom_t processId = XCB_ATOM_NONE;
    xcb_atom_t state = XCB_ATOM_NONE; ///< of windows that a window manager looks after
};

Atoms atomsOf(xcb_connection_t* xcb) {
    const auto atoms =
        internAtoms(xcb,
                    {"_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_DOCK", "_NET_WM_STRUT_PARTIAL",
                     "_NET_WM_STRUT", "_NET_WM_PID", "WM_STATE"},
                    MissingAtoms::leave);
    return {atoms[0], atoms[1], atoms[2], atoms[3], atoms[4], atoms[5]};
}

xcb_get_property_cookie_t ask(xcb_connection_t* xcb, xcb_window_t window, xcb_atom_t property,
                              xcb_atom_t type, std::uint32_t count) {
    return xcb_get_property(xcb, 0, window, property, type, 0, count);
}

struct Window {
    xcb_window_t id;
    std::size_t height; ///< where the root's child that it is in lies in the stack, from below
};
using Windows = std::vector<Window>;

std::span<const xcb_window_t> childrenIn(const XcbReply<xcb_query_tree_reply_t>& tree) {
    if (!tree)
        return {};
    return {xcb_query_tree_children(tree.get()),
            static_cast<std::size_t>(xcb_query_tree_children_length(tree.get()))};
}

Windows topLevelWindows(xcb_connection_t* xcb, xcb_window_t root) {
    const XcbReply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(xcb, xcb_query_tree(xcb, root), nullptr));
    Windows windows;
    for (const xcb_window_t child : childrenIn(tree))
        if (windows.size() < mostWindows)
            windows.push_back({child, windows.size()});
    return windows;
}

/// What has been asked about one window, all at once.
struct Question {
    xcb_get_window_attributes_cookie_t attributes;
    xcb_get_property_cookie_t type;
    xcb_get_property_cookie_t state;
    xcb_query_tree_cookie_t tree;
};

/// Puts the docks among `windows` into `docks`; returns the children of those that may be frames.
Windows sortOut(xcb_connection_t* xcb, const Atoms& atoms, const Windows& windows, Windows& docks) {
    constexpr std::uint32_t mostTypes = 32;
    std::vector<Question> questions;
    questions.reserve(windows.size());
    for (const auto [id, height] : windows)
        questions.push_back({xcb_get_window_attributes(xcb, id),
                             ask(xcb, id, atoms.windowType, XCB_ATOM_ATOM, mostTypes),
                             ask(xcb, id, atoms.state, atoms.state, 1), xcb_query_tree(xcb, id)});
    Windows children;
    for (std::size_t i = 0; i < windows.size(); ++i) {
        const Question& question = questions[i];
        const XcbReply<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(xcb, question.attributes, nullptr));
        const auto types = numbersIn(xcb, question.type);
        const bool isManaged = !numbersIn(xcb, question.state).empty();
        const bool isShown = attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
        const XcbReply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(xcb, question.tree, nullptr));
        if (isShown && types.empty() && !isManaged)
            for (const xcb_window_t child : childrenIn(tree))
                if (children.size() < mostWindows)
                    children.push_back({child, windows[i].height});
        if (isShown && std::find(types.begin(), types.end(), atoms.dock) != types.end())
            docks.push_back(windows[i]);
    }
    return children;
}

std::vector<Dock> describe(xcb_connection_t* xcb, xcb_window_t root, const Atoms& atoms,
                           const Windows& windows) {
    struct Cookies {
        xcb_get_geometry_cookie_t geometry;
        xcb_translate_coordinates_cookie_t place;
        xcb_get_property_cookie_t partial, plain, processId;
    };
    std::vector<Cookies> cookies;
    for (const auto [id, height] : windows)
        cookies.push_back({xcb_get_geometry(xcb, id),
                           xcb_translate_coordinates(xcb, id, root, 0, 0),
                           ask(xcb, id, atoms.strutPartial, XCB_ATOM_CARDINAL, 13),
                           ask(xcb, id, atoms.strut, XCB_ATOM_CARDINAL, 5),
                           ask(xcb, id, atoms.processId, XCB_ATOM_CARDINAL, 1)});
    std::vector<Dock> docks;
    for (std::size_t i = 0; i < windows.size(); ++i) {
        const XcbReply<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(xcb, cookies[i].geometry, nullptr));
        const XcbReply<xcb_translate_coordinates_reply_t> place(
            xcb_translate_coordinates_reply(xcb, cookies[i].place, nullptr));
        const auto partial = numbersIn(xcb, cookies[i].partial);
        const auto plain = numbersIn(xcb, cookies[i].plain);
        const auto processId = numbersIn(xcb, cookies[i].processId);
        if (geometry && place) // else it has gone meanwhile
            docks.push_back({windows[i].id,
                             processId.empty() ? 0 : processId.front(),
                             {place->dst_x, place->dst_y, geometry->width, geometry->height},
                             strutIn(partial, plain)});
    }
    return docks;
}

} // namespace

std::vector<Dock> findDocks(xcb_connection_t* connection, xcb_window_t root) {
    const Atoms atoms = atomsOf(connection);
    if (atoms.dock == XCB_ATOM_NONE || atoms.windowType == XCB_ATOM_NONE)
        return {};
    Windows level = topLevelWindows(connection, root);
    Windows docks;
    for (int depth = 0; depth < deepest && !level.empty(); ++depth)
        level = sortOut(connection, atoms, level, docks);
    std::stable_sort(docks.begin(), docks.end(),
                     [](const Window& a, const Window& b) { return a.height < b.height; });
    return describe(connection, root, atoms, docks);
}

PixelRect findWorkArea(xcb_connection_t* connection, xcb_window_t root) {
    constexpr std::uint32_t mostWorkspaces = 256;
    const auto [area, current] =
        internAtoms(connection, {"_NET_WORKAREA", "_NET_CURRENT_DESKTOP"}, MissingAtoms::leave);
    if (area == XCB_ATOM_NONE)
        return {};
    const auto areaCookie = ask(connection, root, area, XCB_ATOM_CARDINAL, 4 * mostWorkspaces);
    const auto currentCookie = ask(connection, root, current, XCB_ATOM_CARDINAL, 1);
    const auto areas = numbersIn(connection, areaCookie);
    const auto workspaces = numbersIn(connection, currentCookie);
    const std::size_t first = workspaces.empty() ? 0 : 4 * std::size_t{workspaces.front()};
    if (first + 4 > areas.size())
        return {};
    const auto coordinate = [&](std::size_t index) {
        constexpr std::uint32_t largest = 32767;
        return static_cast<int>(std::min(areas[first + index], largest));
    };
    return {coordinate(0), coordinate(1), coordinate(2), coordinate(3)};
}

} // namespace noctra
