#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include <xcb/randr.h>

#include "platform/DisplayIdentity.h"

namespace noctra {

/// RandR's output property that says what kind of plug an output has, and its value for a panel
/// that is part of the machine.
inline constexpr std::string_view connectorTypeProperty = "ConnectorType";
inline constexpr std::string_view panelConnectorType = "Panel";

/// What an output's properties say about the display behind it. For the thread that uses the
/// connection.
class RandrOutputProperties {
public:
    /// Makes the names known to the server. One round trip without a time limit.
    explicit RandrOutputProperties(xcb_connection_t* connection);

    /// Whether a change of the property `atom` may change what is read here.
    [[nodiscard]] bool reads(xcb_atom_t atom) const { return atom == edid_ || atom == type_; }

    /// The requests for one output's properties: all are sent before the first is answered.
    struct Asked {
        xcb_randr_get_output_property_cookie_t edid;
        xcb_randr_get_output_property_cookie_t type;
    };
    [[nodiscard]] Asked ask(xcb_randr_output_t output) const;
    /// Waits for what has been asked for and sets `edid` and `builtIn` of `display`, whose
    /// connector is known: it decides where the server does not say what kind of plug it is.
    void read(const Asked& asked, AttachedDisplay& display) const;

private:
    xcb_connection_t* const connection_;
    xcb_atom_t edid_ = XCB_ATOM_NONE;
    xcb_atom_t type_ = XCB_ATOM_NONE;
    xcb_atom_t panel_ = XCB_ATOM_NONE;
};

} // namespace noctra
