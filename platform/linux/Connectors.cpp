#include "platform/linux/Connectors.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "platform/linux/XConnection.h"

namespace noctra {

namespace {

xcb_intern_atom_cookie_t askForAtom(xcb_connection_t* connection, std::string_view name) {
    return xcb_intern_atom(connection, 1, static_cast<std::uint16_t>(name.size()), name.data());
}

/// XCB_ATOM_NONE where the server does not know the name; then nobody uses it.
xcb_atom_t answeredAtom(xcb_connection_t* connection, xcb_intern_atom_cookie_t asked) {
    const XcbReply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection, asked, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

} // namespace

bool isPanelConnectorName(std::string_view connector) {
    constexpr std::array<std::string_view, 3> starts{"eDP", "LVDS", "DSI"};
    return std::any_of(starts.begin(), starts.end(), [connector](std::string_view start) {
        return connector.starts_with(start);
    });
}

bool isBuiltInOutput(xcb_connection_t* connection, xcb_randr_output_t output,
                     std::string_view connector) {
    if (isPanelConnectorName(connector))
        return true;
    const auto typeAsked = askForAtom(connection, connectorTypeProperty);
    const auto panelAsked = askForAtom(connection, panelConnectorType);
    const xcb_atom_t type = answeredAtom(connection, typeAsked);
    const xcb_atom_t panel = answeredAtom(connection, panelAsked);
    if (type == XCB_ATOM_NONE || panel == XCB_ATOM_NONE)
        return false;
    const XcbReply<xcb_randr_get_output_property_reply_t> property(
        xcb_randr_get_output_property_reply(
            connection,
            xcb_randr_get_output_property(connection, output, type, XCB_ATOM_ATOM, 0, 1, 0, 0),
            nullptr));
    if (!property || property->type != XCB_ATOM_ATOM || property->format != 32 ||
        property->num_items == 0)
        return false;
    const auto* value =
        reinterpret_cast<const xcb_atom_t*>(xcb_randr_get_output_property_data(property.get()));
    return *value == panel;
}

} // namespace noctra
