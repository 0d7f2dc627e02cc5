#include "tests/desktop/displayservices/Surroundings.h"

#include "tests/desktop/support/XConnection.h"

namespace noctra::desktop {

namespace {

using Edid = std::array<std::uint8_t, 128>;

xcb_atom_t edidAtom(const XConnection& connection) {
    const std::string name = "EDID";
    return XConnection::answered(
               xcb_intern_atom_reply(connection.get(),
                                     xcb_intern_atom(connection.get(), 0,
                                                     static_cast<std::uint16_t>(name.size()),
                                                     name.data()),
                                     nullptr),
               "atom")
        ->atom;
}

} // namespace

std::array<std::uint8_t, 128> edidWith(std::uint8_t mark) {
    Edid edid{0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00};
    edid.back() = mark;
    return edid;
}

XServer& sharedServer() {
    static XServer server(3);
    return server;
}

std::vector<DisplayId> outputIds(const XServer& server) {
    const XConnection connection(server.display());
    const auto resources = connection.resources();
    const auto* ids = xcb_randr_get_screen_resources_current_outputs(resources.get());
    return {ids, ids + resources->num_outputs};
}

void setEdid(const XServer& server, int output, std::optional<std::uint8_t> mark) {
    const XConnection connection(server.display());
    const DisplayId id = outputIds(server).at(static_cast<std::size_t>(output));
    const xcb_atom_t property = edidAtom(connection);
    const Edid edid = edidWith(mark.value_or(0));
    connection.check(
        mark ? xcb_randr_change_output_property_checked(
                   connection.get(), id, property, XCB_ATOM_INTEGER, 8, XCB_PROP_MODE_REPLACE,
                   static_cast<std::uint32_t>(edid.size()), edid.data())
             : xcb_randr_delete_output_property_checked(connection.get(), id, property),
        "EDID");
}

} // namespace noctra::desktop
