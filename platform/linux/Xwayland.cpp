#include "platform/linux/Xwayland.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace noctra {

namespace {

// The extension that Xwayland has since 23.1.
constexpr std::string_view extensionName = "XWAYLAND";
// The property of outputs whose modes Xwayland makes up.
constexpr std::string_view emulationProperty = "RANDR Emulation";
// How Xwayland names outputs for which the compositor has told it no names.
constexpr std::string_view outputPrefix = "XWAYLAND";

/// Whether an output carries the property `emulation` (XCB_NONE: there is none) or Xwayland's name.
bool hasEmulatedOutput(const RandrConnection& connection, xcb_atom_t emulation) {
    xcb_connection_t* xcb = connection.xcb.get();
    const XcbReply<xcb_randr_get_screen_resources_current_reply_t> resources(
        xcb_randr_get_screen_resources_current_reply(
            xcb, xcb_randr_get_screen_resources_current(xcb, connection.root), nullptr));
    if (!resources)
        return false;
    struct Asked {
        xcb_randr_get_output_info_cookie_t info;
        xcb_randr_get_output_property_cookie_t property;
    };
    const auto* outputs = xcb_randr_get_screen_resources_current_outputs(resources.get());
    std::vector<Asked> asked;
    for (int i = 0; i < xcb_randr_get_screen_resources_current_outputs_length(resources.get()); ++i)
        asked.push_back({xcb_randr_get_output_info(xcb, outputs[i], resources->config_timestamp),
                         emulation == XCB_NONE ? xcb_randr_get_output_property_cookie_t{}
                                               : xcb_randr_get_output_property(
                                                     xcb, outputs[i], emulation,
                                                     XCB_GET_PROPERTY_TYPE_ANY, 0, 0, 0, 0)});
    const auto isEmulated = [&](const Asked& output) {
        const XcbReply<xcb_randr_get_output_info_reply_t> info(
            xcb_randr_get_output_info_reply(xcb, output.info, nullptr));
        const XcbReply<xcb_randr_get_output_property_reply_t> property(
            emulation == XCB_NONE
                ? nullptr
                : xcb_randr_get_output_property_reply(xcb, output.property, nullptr));
        if (property && property->type != XCB_NONE)
            return true;
        return info && std::string_view(reinterpret_cast<const char*>(
                                            xcb_randr_get_output_info_name(info.get())),
                                        info->name_len)
                           .starts_with(outputPrefix);
    };
    return std::count_if(asked.begin(), asked.end(), isEmulated) > 0; // every answer is taken
}

} // namespace

bool isXwayland(const RandrConnection& connection) {
    xcb_connection_t* xcb = connection.xcb.get();
    const auto extension =
        xcb_query_extension(xcb, std::uint16_t{extensionName.size()}, extensionName.data());
    const xcb_atom_t emulation = internAtom(xcb, emulationProperty, MissingAtoms::leave);
    const XcbReply<xcb_query_extension_reply_t> itself(
        xcb_query_extension_reply(xcb, extension, nullptr));
    return (itself && itself->present != 0) || hasEmulatedOutput(connection, emulation);
}

} // namespace noctra
