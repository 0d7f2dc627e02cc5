#include "platform/linux/ServerMark.h"

#include <string_view>

namespace noctra {

bool markServer(const RandrConnection& connection) {
    constexpr std::string_view name = "_NOCTRA_WAS_HERE";
    constexpr std::uint32_t yes = 1;
    xcb_connection_t* xcb = connection.xcb.get();
    const XcbReply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
        xcb, xcb_intern_atom(xcb, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr));
    if (!atom)
        return false;
    const XcbReply<xcb_get_property_reply_t> before(xcb_get_property_reply(
        xcb, xcb_get_property(xcb, 0, connection.root, atom->atom, XCB_GET_PROPERTY_TYPE_ANY, 0, 1),
        nullptr));
    xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, connection.root, atom->atom, XCB_ATOM_CARDINAL,
                        32, 1, &yes);
    return before && before->type != XCB_NONE;
}

} // namespace noctra
