#pragma once

#include <string_view>

#include <xcb/randr.h>

namespace noctra {

/// RandR's output property that says what kind of plug an output has, and its value for a panel
/// that is part of the machine.
inline constexpr std::string_view connectorTypeProperty = "ConnectorType";
inline constexpr std::string_view panelConnectorType = "Panel";

/// True for the name of an output that has no plug to the outside, such as "eDP-1". Any thread.
[[nodiscard]] bool isPanelConnectorName(std::string_view connector);

/// True when `output` is a panel that is part of the machine: its ConnectorType says so, or else
/// its name, `connector`. Up to three round trips without a time limit; for the thread that uses
/// the connection. On a broken connection the name decides.
[[nodiscard]] bool isBuiltInOutput(xcb_connection_t* connection, xcb_randr_output_t output,
                                   std::string_view connector);

} // namespace noctra
