#include "platform/linux/tray/RawPresses.h"

#include <utility>

#include <xcb/xinput.h>

namespace noctra {

namespace {

constexpr std::uint32_t leftButton = 1;
constexpr std::uint32_t rightButton = 3;

struct EventMask {
    xcb_input_event_mask_t head;
    std::uint32_t bits;
};

bool selectRawPresses(xcb_connection_t* xcb, xcb_window_t root) {
    const EventMask mask{{XCB_INPUT_DEVICE_ALL_MASTER, 1},
                         XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS};
    const XcbReply<xcb_generic_error_t> error(
        xcb_request_check(xcb, xcb_input_xi_select_events_checked(xcb, root, 1, &mask.head)));
    return !error && xcb_connection_has_error(xcb) == 0;
}

/// Raw events reach a client also during grabs only if it says that it knows 2.1.
bool speaksXInput21(xcb_connection_t* xcb) {
    const XcbReply<xcb_input_xi_query_version_reply_t> version(
        xcb_input_xi_query_version_reply(xcb, xcb_input_xi_query_version(xcb, 2, 1), nullptr));
    return version && (version->major_version > 2 ||
                       (version->major_version == 2 && version->minor_version >= 1));
}

/// The button that the person has put in the place of this one on a device.
std::uint32_t mapped(xcb_connection_t* xcb, std::uint16_t device, std::uint32_t button) {
    const XcbReply<xcb_input_get_device_button_mapping_reply_t> mapping(
        xcb_input_get_device_button_mapping_reply(
            xcb, xcb_input_get_device_button_mapping(xcb, static_cast<std::uint8_t>(device)),
            nullptr));
    if (!mapping || button == 0 || button > mapping->map_size)
        return button;
    return xcb_input_get_device_button_mapping_map(mapping.get())[button - 1];
}

} // namespace

RawPresses::RawPresses(XcbConnection connection, xcb_window_t root, std::uint8_t extension)
    : connection_(std::move(connection)), root_(root), extension_(extension) {}

std::optional<RawPresses> RawPresses::listen(std::string& reason) {
    int screenNumber = 0;
    XcbConnection connection(xcb_connect(nullptr, &screenNumber));
    xcb_connection_t* xcb = connection.get();
    if (xcb_connection_has_error(xcb) != 0) {
        reason = "cannot connect to the X server";
        return std::nullopt;
    }
    auto screen = xcb_setup_roots_iterator(xcb_get_setup(xcb));
    for (; screen.rem > 1 && screenNumber > 0; --screenNumber)
        xcb_screen_next(&screen);
    const xcb_query_extension_reply_t* extension = xcb_get_extension_data(xcb, &xcb_input_id);
    if (extension == nullptr || extension->present == 0 || !speaksXInput21(xcb) ||
        !selectRawPresses(xcb, screen.data->root)) {
        reason = "the X server has no XInput 2.1";
        return std::nullopt;
    }
    return RawPresses(std::move(connection), screen.data->root, extension->major_opcode);
}

int RawPresses::descriptor() const {
    return xcb_get_file_descriptor(connection_.get());
}

bool RawPresses::isBroken() const {
    return xcb_connection_has_error(connection_.get()) != 0;
}

std::optional<RawPresses::Press> RawPresses::next() {
    while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
        const auto* press =
            reinterpret_cast<const xcb_input_raw_button_press_event_t*>(event.get());
        if ((event->response_type & 0x7F) != XCB_GE_GENERIC || press->extension != extension_ ||
            press->event_type != XCB_INPUT_RAW_BUTTON_PRESS)
            continue;
        // Raw events have the number of the button on the mouse. The mouse's own mapping applies,
        // then that of the pointer that all mice move.
        const std::uint32_t onMouse = mapped(connection_.get(), press->sourceid, press->detail);
        const std::uint32_t button = mapped(connection_.get(), press->deviceid, onMouse);
        if (button != leftButton && button != rightButton)
            continue;
        return Press{pointer(press->deviceid), button == leftButton, press->time};
    }
    return std::nullopt;
}

PixelPoint RawPresses::pointer(std::uint16_t device) const {
    xcb_connection_t* xcb = connection_.get();
    const XcbReply<xcb_input_xi_query_pointer_reply_t> reply(xcb_input_xi_query_pointer_reply(
        xcb, xcb_input_xi_query_pointer(xcb, root_, device), nullptr));
    constexpr int fractionBits = 16;
    return reply ? PixelPoint{reply->root_x >> fractionBits, reply->root_y >> fractionBits}
                 : PixelPoint{};
}

} // namespace noctra
