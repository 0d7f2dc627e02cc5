#include "tests/desktop/support/OutputPlugs.h"

#include <cstdint>
#include <cstring>

namespace noctra::desktop {

namespace {

// A grid of the smallest usual mode has room for the 16 outputs of the dummy driver.
constexpr int columns = 8;
constexpr int outputWidth = 640;
constexpr int outputHeight = 480;
constexpr int rows = 2;

} // namespace

OutputPlugs::OutputPlugs(const std::string& display)
    : connection_(std::make_shared<XConnection>(display)) {}

void OutputPlugs::plug(int output) const {
    const xcb_randr_output_t id = outputAt(output);
    const OutputInfo itsInfo = info(id);
    if (itsInfo->crtc != XCB_NONE)
        return;
    makeRoom();
    xcb_connection_t* connection = connection_->get();
    connection_->check(xcb_randr_add_output_mode_checked(connection, id, mode()), "output mode");
    const xcb_randr_crtc_t* crtcs = xcb_randr_get_output_info_crtcs(itsInfo.get());
    for (int candidate = 0; candidate < itsInfo->num_crtcs; ++candidate) {
        const auto crtc = XConnection::answered(
            xcb_randr_get_crtc_info_reply(
                connection, xcb_randr_get_crtc_info(connection, crtcs[candidate], XCB_CURRENT_TIME),
                nullptr),
            "CRTC");
        if (crtc->mode == XCB_NONE)
            return configure(crtcs[candidate], output, mode());
    }
    throw std::runtime_error("no CRTC is free for output " + std::to_string(output));
}

void OutputPlugs::unplug(int output) const {
    if (const OutputInfo itsInfo = info(outputAt(output)); itsInfo->crtc != XCB_NONE)
        configure(itsInfo->crtc, output, XCB_NONE);
}

void OutputPlugs::plugOnly(int count) const {
    const int all = connection_->resources()->num_outputs;
    for (int output = 0; output < all; ++output)
        output < count ? plug(output) : unplug(output);
}

void OutputPlugs::setBuiltIn(int output, bool builtIn) const {
    const xcb_atom_t kind = connection_->atom(builtIn ? "Panel" : "DisplayPort");
    connection_->check(xcb_randr_change_output_property_checked(
                           connection_->get(), outputAt(output), connection_->atom("ConnectorType"),
                           XCB_ATOM_ATOM, 32, XCB_PROP_MODE_REPLACE, 1, &kind),
                       "output property");
}

void OutputPlugs::announceChange() const {
    for (const int millimetres : {1001, 1000}) // one of the two is another than before
        makeRoom(millimetres);
}

void OutputPlugs::makeRoom(int millimetres) const {
    connection_->check(xcb_randr_set_screen_size_checked(connection_->get(), connection_->root(),
                                                         columns * outputWidth, rows * outputHeight,
                                                         static_cast<std::uint32_t>(millimetres),
                                                         static_cast<std::uint32_t>(millimetres)),
                       "screen size");
}

xcb_randr_output_t OutputPlugs::outputAt(int output) const {
    const XConnection::Resources resources = connection_->resources();
    if (output >= resources->num_outputs)
        throw std::runtime_error("there is no output " + std::to_string(output));
    return xcb_randr_get_screen_resources_current_outputs(resources.get())[output];
}

xcb_randr_mode_t OutputPlugs::mode() const {
    const XConnection::Resources resources = connection_->resources();
    auto modes = xcb_randr_get_screen_resources_current_modes_iterator(resources.get());
    for (; modes.rem > 0; xcb_randr_mode_info_next(&modes))
        if (modes.data->width == outputWidth && modes.data->height == outputHeight)
            return modes.data->id;
    throw std::runtime_error("the X server does not know the mode for the outputs");
}

void OutputPlugs::configure(xcb_randr_crtc_t crtc, int output, xcb_randr_mode_t mode) const {
    const bool lit = mode != XCB_NONE;
    const xcb_randr_output_t id = outputAt(output);
    const auto x = static_cast<std::int16_t>(lit ? output % columns * outputWidth : 0);
    const auto y = static_cast<std::int16_t>(lit ? output / columns * outputHeight : 0);
    xcb_connection_t* connection = connection_->get();
    const auto reply = XConnection::answered(
        xcb_randr_set_crtc_config_reply(
            connection,
            xcb_randr_set_crtc_config(connection, crtc, XCB_CURRENT_TIME, XCB_CURRENT_TIME, x, y,
                                      mode, XCB_RANDR_ROTATION_ROTATE_0, lit ? 1 : 0, &id),
            nullptr),
        "CRTC configuration");
    if (reply->status != XCB_RANDR_SET_CONFIG_SUCCESS)
        throw std::runtime_error("the X server refused to configure output " +
                                 std::to_string(output));
}

OutputPlugs::OutputInfo OutputPlugs::info(xcb_randr_output_t output) const {
    xcb_connection_t* connection = connection_->get();
    return XConnection::answered(
        xcb_randr_get_output_info_reply(
            connection, xcb_randr_get_output_info(connection, output, XCB_CURRENT_TIME), nullptr),
        "output");
}

} // namespace noctra::desktop
