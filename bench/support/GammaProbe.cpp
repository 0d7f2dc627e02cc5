#include "bench/support/GammaProbe.h"

namespace noctra::desktop {

namespace {

std::vector<std::uint16_t> levels(const std::uint16_t* first, int count) {
    return {first, first + count};
}

} // namespace

GammaProbe::GammaProbe(const std::string& display)
    : connection_(std::make_shared<XConnection>(display)) {
    const XConnection::Resources resources = connection_->resources();
    const xcb_randr_crtc_t* first = xcb_randr_get_screen_resources_current_crtcs(resources.get());
    crtcs_.assign(first, first + resources->num_crtcs);
}

TablesByCrtc GammaProbe::readAll() const {
    TablesByCrtc all;
    for (std::size_t index = 0; index < crtcs_.size(); ++index)
        all[static_cast<int>(index)] = read(crtcs_[index]);
    return all;
}

TablesByCrtc GammaProbe::readLit() const {
    TablesByCrtc lit;
    for (std::size_t index = 0; index < crtcs_.size(); ++index)
        if (isLit(crtcs_[index]))
            lit[static_cast<int>(index)] = read(crtcs_[index]);
    return lit;
}

void GammaProbe::write(int crtc, const Tables& tables) const {
    connection_->check(xcb_randr_set_crtc_gamma_checked(
                           connection_->get(), crtcs_.at(static_cast<std::size_t>(crtc)),
                           static_cast<std::uint16_t>(tables.red.size()), tables.red.data(),
                           tables.green.data(), tables.blue.data()),
                       "gamma tables");
}

void GammaProbe::write(const TablesByCrtc& tables) const {
    for (const auto& [crtc, itsTables] : tables)
        write(crtc, itsTables);
}

Tables GammaProbe::read(xcb_randr_crtc_t crtc) const {
    xcb_connection_t* connection = connection_->get();
    const auto reply =
        XConnection::answered(xcb_randr_get_crtc_gamma_reply(
                                  connection, xcb_randr_get_crtc_gamma(connection, crtc), nullptr),
                              "gamma tables");
    return {levels(xcb_randr_get_crtc_gamma_red(reply.get()), reply->size),
            levels(xcb_randr_get_crtc_gamma_green(reply.get()), reply->size),
            levels(xcb_randr_get_crtc_gamma_blue(reply.get()), reply->size)};
}

bool GammaProbe::isLit(xcb_randr_crtc_t crtc) const {
    xcb_connection_t* connection = connection_->get();
    const auto reply = XConnection::answered(
        xcb_randr_get_crtc_info_reply(
            connection, xcb_randr_get_crtc_info(connection, crtc, XCB_CURRENT_TIME), nullptr),
        "CRTC");
    return reply->mode != XCB_NONE && reply->num_outputs > 0;
}

} // namespace noctra::desktop
