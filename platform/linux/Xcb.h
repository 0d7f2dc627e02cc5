#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <vector>

#include <xcb/xcb.h>

namespace noctra {

struct XcbDisconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
using XcbConnection = std::unique_ptr<xcb_connection_t, XcbDisconnect>;

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};
/// A reply or event that xcb allocated.
template <typename Reply>
using XcbReply = std::unique_ptr<Reply, FreeReply>;

/// What becomes of names that the X server has no atom for yet.
enum class MissingAtoms : std::uint8_t { make, leave };

/// The atoms called `names`, in their order. XCB_ATOM_NONE for a name that is left without one, and
/// where the server does not answer. One round trip, without a time limit.
template <std::size_t count>
[[nodiscard]] std::array<xcb_atom_t, count> internAtoms(xcb_connection_t* connection,
                                                        const std::string_view (&names)[count],
                                                        MissingAtoms missing = MissingAtoms::make) {
    std::array<xcb_intern_atom_cookie_t, count> cookies{};
    for (std::size_t i = 0; i < count; ++i)
        cookies[i] = xcb_intern_atom(connection, missing == MissingAtoms::leave ? 1 : 0,
                                     static_cast<std::uint16_t>(names[i].size()), names[i].data());
    std::array<xcb_atom_t, count> atoms{};
    for (std::size_t i = 0; i < count; ++i)
        if (const XcbReply<xcb_intern_atom_reply_t> reply{
                xcb_intern_atom_reply(connection, cookies[i], nullptr)})
            atoms[i] = reply->atom;
    return atoms;
}

/// One atom, as internAtoms.
[[nodiscard]] inline xcb_atom_t internAtom(xcb_connection_t* connection, std::string_view name,
                                           MissingAtoms missing = MissingAtoms::make) {
    return internAtoms(connection, {name}, missing)[0];
}

/// The window that owns `selection`; XCB_NONE where none does or the server does not answer. A
/// round trip.
[[nodiscard]] inline xcb_window_t selectionOwner(xcb_connection_t* connection,
                                                 xcb_atom_t selection) {
    const XcbReply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, selection), nullptr));
    return reply ? reply->owner : xcb_window_t{XCB_NONE};
}

/// The 32-bit numbers of the property that `cookie` asked for; none where it is missing or of
/// another type or unit.
[[nodiscard]] inline std::vector<std::uint32_t> numbersIn(xcb_connection_t* connection,
                                                          xcb_get_property_cookie_t cookie) {
    const XcbReply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection, cookie, nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

} // namespace noctra
