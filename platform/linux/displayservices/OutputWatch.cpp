#include "platform/linux/displayservices/OutputWatch.h"

#include <algorithm>
#include <cstring>
#include <set>
#include <string>
#include <utility>

#include <poll.h>

#include "platform/linux/Connectors.h"
#include "platform/linux/displayservices/BoundedReplies.h"

namespace noctra::display_services {

namespace {

constexpr std::uint16_t watchedChanges =
    XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
    XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE | XCB_RANDR_NOTIFY_MASK_OUTPUT_PROPERTY;

/// The CRTCs that show a mode.
std::set<xcb_randr_crtc_t> litCrtcs(xcb_connection_t* xcb, BoundedReplies& replies,
                                    const xcb_randr_get_screen_resources_current_reply_t& all) {
    const auto* crtcs = xcb_randr_get_screen_resources_current_crtcs(&all);
    std::vector<xcb_randr_get_crtc_info_cookie_t> asked;
    asked.reserve(all.num_crtcs);
    for (int i = 0; i < all.num_crtcs; ++i)
        asked.push_back(xcb_randr_get_crtc_info(xcb, crtcs[i], all.config_timestamp));
    std::set<xcb_randr_crtc_t> lit;
    for (std::size_t i = 0; i < asked.size(); ++i)
        if (const auto info = replies.get<xcb_randr_get_crtc_info_reply_t>(asked[i]);
            info && info->mode != XCB_NONE)
            lit.insert(crtcs[i]);
    return lit;
}

struct LitOutputs {
    std::vector<xcb_randr_output_t> ids;
    std::vector<bool> panelNames; ///< for each of them: its name is that of a panel's connector
};

LitOutputs litOutputs(xcb_connection_t* xcb, BoundedReplies& replies,
                      const xcb_randr_get_screen_resources_current_reply_t& all) {
    const auto crtcs = litCrtcs(xcb, replies, all);
    const auto* outputs = xcb_randr_get_screen_resources_current_outputs(&all);
    std::vector<xcb_randr_get_output_info_cookie_t> asked;
    asked.reserve(all.num_outputs);
    for (int i = 0; i < all.num_outputs; ++i)
        asked.push_back(xcb_randr_get_output_info(xcb, outputs[i], all.config_timestamp));
    LitOutputs lit;
    for (std::size_t i = 0; i < asked.size(); ++i) {
        const auto info = replies.get<xcb_randr_get_output_info_reply_t>(asked[i]);
        if (!info || !crtcs.contains(info->crtc))
            continue;
        const auto* name =
            reinterpret_cast<const char*>(xcb_randr_get_output_info_name(info.get()));
        const auto length =
            static_cast<std::size_t>(xcb_randr_get_output_info_name_length(info.get()));
        lit.ids.push_back(outputs[i]);
        lit.panelNames.push_back(isPanelConnectorName({name, length}));
    }
    return lit;
}

std::optional<Edid> edidIn(const xcb_randr_get_output_property_reply_t* property) {
    Edid edid{};
    if (property == nullptr || property->format != 8 || property->num_items < edid.size())
        return std::nullopt;
    std::memcpy(edid.data(), xcb_randr_get_output_property_data(property), edid.size());
    return edid;
}

bool isAtom(const xcb_randr_get_output_property_reply_t* property, xcb_atom_t atom) {
    return property != nullptr && property->type == XCB_ATOM_ATOM && property->format == 32 &&
           property->num_items > 0 &&
           std::memcmp(xcb_randr_get_output_property_data(property), &atom, sizeof atom) == 0;
}

} // namespace

OutputWatch::OutputWatch() : connection_(connectToRandr(nullptr)) {
    if (!usable())
        return;
    edidAtom_ = atom("EDID");
    typeAtom_ = atom(connectorTypeProperty);
    panelAtom_ = atom(panelConnectorType);
    xcb_randr_select_input(connection_.xcb.get(), connection_.root, watchedChanges);
    xcb_flush(connection_.xcb.get());
}

bool OutputWatch::usable() const {
    return connection_.xcb && xcb_connection_has_error(connection_.xcb.get()) == 0;
}

/// Made where the server does not know it yet: a property may be set later.
xcb_atom_t OutputWatch::atom(std::string_view name) const {
    xcb_connection_t* xcb = connection_.xcb.get();
    const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        xcb, xcb_intern_atom(xcb, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

int OutputWatch::descriptor() const {
    return usable() ? xcb_get_file_descriptor(connection_.xcb.get()) : -1;
}

bool OutputWatch::isNews(const xcb_generic_event_t& event) const {
    const int type = (event.response_type & 0x7F) - connection_.firstEvent;
    if (type != XCB_RANDR_NOTIFY)
        return type == XCB_RANDR_SCREEN_CHANGE_NOTIFY;
    const auto& notify = reinterpret_cast<const xcb_randr_notify_event_t&>(event);
    // Other properties change all the time, some with every step of the backlight.
    return notify.subCode != XCB_RANDR_NOTIFY_OUTPUT_PROPERTY || notify.u.op.atom == edidAtom_ ||
           notify.u.op.atom == typeAtom_;
}

bool OutputWatch::takeNews() {
    if (!usable())
        return false;
    xcb_connection_t* xcb = connection_.xcb.get();
    pollfd polled{xcb_get_file_descriptor(xcb), POLLIN, 0};
    if (::poll(&polled, 1, 0) > 0 && answersMissing_)
        changed_ = true;
    while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(xcb)})
        changed_ = changed_ || isNews(*event);
    return std::exchange(changed_, false);
}

std::optional<std::vector<Output>> OutputWatch::read(std::chrono::milliseconds limit) {
    if (!usable())
        return std::nullopt;
    xcb_connection_t* xcb = connection_.xcb.get();
    BoundedReplies replies(xcb, limit);
    const auto all = replies.get<xcb_randr_get_screen_resources_current_reply_t>(
        xcb_randr_get_screen_resources_current(xcb, connection_.root));
    std::vector<Output> outputs;
    if (all) {
        const LitOutputs lit = litOutputs(xcb, replies, *all);
        outputs = describe(replies, lit.ids, lit.panelNames);
    }
    answersMissing_ = replies.ranOut();
    if (!all || answersMissing_ || !usable())
        return std::nullopt;
    return outputs;
}

std::vector<Output> OutputWatch::describe(BoundedReplies& replies,
                                          const std::vector<xcb_randr_output_t>& outputs,
                                          const std::vector<bool>& panelNames) const {
    xcb_connection_t* xcb = connection_.xcb.get();
    const auto ask = [&](xcb_randr_output_t output, xcb_atom_t property, std::uint32_t words) {
        return xcb_randr_get_output_property(xcb, output, property, XCB_GET_PROPERTY_TYPE_ANY, 0,
                                             words, 0, 0);
    };
    struct Asked {
        xcb_randr_get_output_property_cookie_t edid;
        xcb_randr_get_output_property_cookie_t type;
    };
    std::vector<Asked> asked;
    asked.reserve(outputs.size());
    for (const xcb_randr_output_t output : outputs)
        asked.push_back({ask(output, edidAtom_, sizeof(Edid) / sizeof(std::uint32_t)),
                         ask(output, typeAtom_, 1)});
    std::vector<Output> described;
    for (std::size_t i = 0; i < outputs.size(); ++i) {
        const auto edid = replies.get<xcb_randr_get_output_property_reply_t>(asked[i].edid);
        const auto type = replies.get<xcb_randr_get_output_property_reply_t>(asked[i].type);
        described.push_back(
            {outputs[i], panelNames[i] || isAtom(type.get(), panelAtom_), edidIn(edid.get())});
    }
    return described;
}

} // namespace noctra::display_services
