#include "platform/linux/ServerMark.h"

namespace noctra {

bool markServer(const RandrConnection& connection) {
    constexpr std::uint32_t yes = 1;
    xcb_connection_t* xcb = connection.xcb.get();
    const xcb_atom_t mark = internAtom(xcb, "_NOCTRA_WAS_HERE");
    if (mark == XCB_ATOM_NONE)
        return false;
    const XcbReply<xcb_get_property_reply_t> before(xcb_get_property_reply(
        xcb, xcb_get_property(xcb, 0, connection.root, mark, XCB_GET_PROPERTY_TYPE_ANY, 0, 1),
        nullptr));
    xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, connection.root, mark, XCB_ATOM_CARDINAL, 32, 1,
                        &yes);
    return before && before->type != XCB_NONE;
}

} // namespace noctra
