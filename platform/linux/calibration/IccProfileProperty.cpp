#include "platform/linux/calibration/IccProfileProperty.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "platform/linux/calibration/ColordProfiles.h"
#include "platform/linux/calibration/PropertyPieces.h"

namespace noctra {

namespace {

constexpr const char* propertyName = "_ICC_PROFILE";

std::span<const std::byte> bytesAt(const void* data, int length) {
    return {static_cast<const std::byte*>(data), static_cast<std::size_t>(std::max(length, 0))};
}

IccProfile outputProperty(xcb_connection_t* connection, xcb_randr_output_t output,
                          xcb_atom_t property) {
    return joinPieces([=](std::uint32_t offset) {
        const auto request = xcb_randr_get_output_property(
            connection, output, property, XCB_GET_PROPERTY_TYPE_ANY, offset, pieceUnits, 0, 0);
        auto* const reply = xcb_randr_get_output_property_reply(connection, request, nullptr);
        if (reply == nullptr)
            return PropertyPiece();
        return PropertyPiece{XcbReply<void>(reply), reply->format == 8, reply->bytes_after,
                             bytesAt(xcb_randr_get_output_property_data(reply),
                                     xcb_randr_get_output_property_data_length(reply))};
    });
}

IccProfile windowProperty(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property) {
    return joinPieces([=](std::uint32_t offset) {
        const auto request = xcb_get_property(connection, 0, window, property,
                                              XCB_GET_PROPERTY_TYPE_ANY, offset, pieceUnits);
        auto* const reply = xcb_get_property_reply(connection, request, nullptr);
        if (reply == nullptr)
            return PropertyPiece();
        return PropertyPiece{
            XcbReply<void>(reply), reply->format == 8, reply->bytes_after,
            bytesAt(xcb_get_property_value(reply), xcb_get_property_value_length(reply))};
    });
}

/// The index of the monitor that shows `output`, in the server's order.
std::optional<int> monitorOf(xcb_connection_t* connection, xcb_window_t root,
                             xcb_randr_output_t output) {
    const XcbReply<xcb_randr_get_monitors_reply_t> reply(xcb_randr_get_monitors_reply(
        connection, xcb_randr_get_monitors(connection, root, 1), nullptr));
    if (!reply)
        return std::nullopt;
    int index = 0;
    for (auto monitor = xcb_randr_get_monitors_monitors_iterator(reply.get()); monitor.rem > 0;
         xcb_randr_monitor_info_next(&monitor), ++index) {
        const auto* const outputs = xcb_randr_monitor_info_outputs(monitor.data);
        const auto* const end = outputs + xcb_randr_monitor_info_outputs_length(monitor.data);
        if (std::find(outputs, end, output) != end)
            return index;
    }
    return std::nullopt;
}

} // namespace

IccProfileProperty::Found IccProfileProperty::profileOf(const Output& output) {
    return {read(output.number), propertyName};
}

IccProfile IccProfileProperty::read(xcb_randr_output_t output) const {
    // A request of an extension that the server lacks would break the connection.
    const auto* const randr = xcb_get_extension_data(connection_, &xcb_randr_id);
    if (randr == nullptr || randr->present == 0)
        return {};

    const std::string name = propertyName;
    const xcb_atom_t first = internAtom(connection_, name, MissingAtoms::leave);
    if (first != XCB_ATOM_NONE)
        if (IccProfile profile = outputProperty(connection_, output, first); !profile.empty())
            return profile;

    const std::optional<int> monitor = monitorOf(connection_, root_, output);
    if (!monitor)
        return {};
    const xcb_atom_t property =
        *monitor == 0
            ? first
            : internAtom(connection_, name + '_' + std::to_string(*monitor), MissingAtoms::leave);
    return property == XCB_ATOM_NONE ? IccProfile() : windowProperty(connection_, root_, property);
}

std::vector<std::unique_ptr<ProfileSource>> profileSources(xcb_connection_t* connection,
                                                           xcb_window_t root) {
    std::vector<std::unique_ptr<ProfileSource>> sources;
    sources.push_back(std::make_unique<ColordProfiles>());
    sources.push_back(std::make_unique<IccProfileProperty>(connection, root));
    return sources;
}

} // namespace noctra
