#include "platform/linux/RandrScreens.h"

#include <map>

namespace noctra {

namespace {

struct CrtcState {
    xcb_randr_mode_t mode = XCB_NONE;
    std::int16_t x = 0;
    std::int16_t y = 0;
    std::uint16_t rotation = 0;
    std::uint16_t gammaSize = 0;
};

std::map<xcb_randr_crtc_t, CrtcState> readCrtcs(xcb_connection_t* xcb,
                                                const std::vector<xcb_randr_crtc_t>& crtcs,
                                                xcb_timestamp_t timestamp) {
    struct Asked {
        xcb_randr_get_crtc_info_cookie_t info;
        xcb_randr_get_crtc_gamma_size_cookie_t size;
    };
    std::vector<Asked> asked;
    asked.reserve(crtcs.size());
    for (const xcb_randr_crtc_t crtc : crtcs)
        asked.push_back({xcb_randr_get_crtc_info(xcb, crtc, timestamp),
                         xcb_randr_get_crtc_gamma_size(xcb, crtc)});

    std::map<xcb_randr_crtc_t, CrtcState> states;
    for (std::size_t i = 0; i < crtcs.size(); ++i) {
        const XcbReply<xcb_randr_get_crtc_info_reply_t> info(
            xcb_randr_get_crtc_info_reply(xcb, asked[i].info, nullptr));
        const XcbReply<xcb_randr_get_crtc_gamma_size_reply_t> size(
            xcb_randr_get_crtc_gamma_size_reply(xcb, asked[i].size, nullptr));
        if (info)
            states[crtcs[i]] = {info->mode, info->x, info->y, info->rotation,
                                size ? size->size : static_cast<std::uint16_t>(0)};
    }
    return states;
}

} // namespace

RandrConfiguration readConfiguration(const RandrConnection& connection,
                                     const RandrOutputProperties& properties) {
    xcb_connection_t* xcb = connection.xcb.get();
    RandrConfiguration configuration;
    const XcbReply<xcb_randr_get_screen_resources_current_reply_t> resources(
        xcb_randr_get_screen_resources_current_reply(
            xcb, xcb_randr_get_screen_resources_current(xcb, connection.root), nullptr));
    if (!resources)
        return configuration;

    const auto* crtcs = xcb_randr_get_screen_resources_current_crtcs(resources.get());
    configuration.crtcs.assign(
        crtcs, crtcs + xcb_randr_get_screen_resources_current_crtcs_length(resources.get()));
    const auto states = readCrtcs(xcb, configuration.crtcs, resources->config_timestamp);

    const auto* outputs = xcb_randr_get_screen_resources_current_outputs(resources.get());
    const int count = xcb_randr_get_screen_resources_current_outputs_length(resources.get());
    std::vector<xcb_randr_get_output_info_cookie_t> asked;
    asked.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        asked.push_back(xcb_randr_get_output_info(xcb, outputs[i], resources->config_timestamp));
    std::vector<RandrOutputProperties::Asked> propertiesAsked;
    for (int i = 0; i < count; ++i) {
        const XcbReply<xcb_randr_get_output_info_reply_t> info(
            xcb_randr_get_output_info_reply(xcb, asked[static_cast<std::size_t>(i)], nullptr));
        if (!info)
            continue;
        const auto state = states.find(info->crtc);
        if (state == states.end() || state->second.mode == XCB_NONE)
            continue;
        const auto* name =
            reinterpret_cast<const char*>(xcb_randr_get_output_info_name(info.get()));
        RandrScreen& screen = configuration.screens.emplace_back();
        screen.output = outputs[i];
        screen.name.assign(name, xcb_randr_get_output_info_name_length(info.get()));
        screen.display.connector = connectorName(screen.name);
        screen.crtc = info->crtc;
        screen.gammaSize = state->second.gammaSize;
        screen.mode = state->second.mode;
        screen.x = state->second.x;
        screen.y = state->second.y;
        screen.rotation = state->second.rotation;
        propertiesAsked.push_back(properties.ask(outputs[i]));
    }
    for (std::size_t i = 0; i < propertiesAsked.size(); ++i)
        properties.read(propertiesAsked[i], configuration.screens[i].display);
    return configuration;
}

std::optional<NativeTables> readCrtcTables(xcb_connection_t* xcb, xcb_randr_crtc_t crtc,
                                           std::int32_t& status) {
    xcb_generic_error_t* rawError = nullptr;
    const XcbReply<xcb_randr_get_crtc_gamma_reply_t> reply(
        xcb_randr_get_crtc_gamma_reply(xcb, xcb_randr_get_crtc_gamma(xcb, crtc), &rawError));
    const XcbReply<xcb_generic_error_t> error(rawError);
    if (!reply || reply->size == 0) {
        status = error ? error->error_code : reply ? noTables : connectionLost;
        return std::nullopt;
    }
    const auto copy = [&](const std::uint16_t* levels) {
        return std::vector<std::uint16_t>(levels, levels + reply->size);
    };
    return NativeTables{copy(xcb_randr_get_crtc_gamma_red(reply.get())),
                        copy(xcb_randr_get_crtc_gamma_green(reply.get())),
                        copy(xcb_randr_get_crtc_gamma_blue(reply.get()))};
}

} // namespace noctra
