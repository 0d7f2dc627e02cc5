#include "platform/linux/RandrOutputProperties.h"

#include <cstring>

#include "platform/linux/Xcb.h"

namespace noctra {

namespace {

using Property = XcbReply<xcb_randr_get_output_property_reply_t>;

std::optional<Edid> edidIn(const Property& property) {
    Edid edid{};
    if (!property || property->format != 8 || property->num_items < edid.size())
        return std::nullopt;
    std::memcpy(edid.data(), xcb_randr_get_output_property_data(property.get()), edid.size());
    return edid;
}

bool isAtom(const Property& property, xcb_atom_t atom) {
    return property && property->type == XCB_ATOM_ATOM && property->format == 32 &&
           property->num_items > 0 &&
           std::memcmp(xcb_randr_get_output_property_data(property.get()), &atom, sizeof atom) == 0;
}

} // namespace

RandrOutputProperties::RandrOutputProperties(xcb_connection_t* connection)
    : connection_(connection) {
    // Made where the server does not know them yet: a property may be set later.
    const auto atoms = internAtoms(connection, {"EDID", connectorTypeProperty, panelConnectorType});
    edid_ = atoms[0];
    type_ = atoms[1];
    panel_ = atoms[2];
}

RandrOutputProperties::Asked RandrOutputProperties::ask(xcb_randr_output_t output) const {
    const auto property = [&](xcb_atom_t atom, std::uint32_t words) {
        return xcb_randr_get_output_property(connection_, output, atom, XCB_GET_PROPERTY_TYPE_ANY,
                                             0, words, 0, 0);
    };
    return {property(edid_, sizeof(Edid) / sizeof(std::uint32_t)), property(type_, 1)};
}

void RandrOutputProperties::read(const Asked& asked, AttachedDisplay& display) const {
    const Property edid(xcb_randr_get_output_property_reply(connection_, asked.edid, nullptr));
    const Property type(xcb_randr_get_output_property_reply(connection_, asked.type, nullptr));
    display.edid = edidIn(edid);
    display.builtIn = isPanelConnectorName(display.connector) || isAtom(type, panel_);
}

} // namespace noctra
