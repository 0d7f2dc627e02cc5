#include "bench/compare/TableWatch.h"

#include <algorithm>

namespace noctra::bench {

using desktop::XConnection;

namespace {

constexpr int warmBelow = 65535 * 8 / 10;

bool isWarm(xcb_connection_t* connection, xcb_randr_get_crtc_gamma_cookie_t cookie) {
    const auto reply = XConnection::answered(
        xcb_randr_get_crtc_gamma_reply(connection, cookie, nullptr), "gamma table");
    return reply->size > 0 &&
           xcb_randr_get_crtc_gamma_blue(reply.get())[reply->size - 1] < warmBelow;
}

} // namespace

TableWatch::TableWatch(const std::string& display) : connection_(display) {
    const XConnection::Resources resources = connection_.resources();
    const xcb_randr_crtc_t* first = xcb_randr_get_screen_resources_current_crtcs(resources.get());
    for (int i = 0; i < resources->num_crtcs; ++i) {
        const auto crtc = XConnection::answered(
            xcb_randr_get_crtc_info_reply(
                connection_.get(),
                xcb_randr_get_crtc_info(connection_.get(), first[i], XCB_CURRENT_TIME), nullptr),
            "CRTC");
        if (crtc->mode != XCB_NONE && crtc->num_outputs > 0)
            crtcs_.push_back(first[i]);
    }
    if (crtcs_.empty())
        throw std::runtime_error("the X server has no display");
}

bool TableWatch::allAre(bool warm) const {
    // All questions first, so that sixteen displays cost one round trip.
    std::vector<xcb_randr_get_crtc_gamma_cookie_t> cookies;
    for (const xcb_randr_crtc_t crtc : crtcs_)
        cookies.push_back(xcb_randr_get_crtc_gamma(connection_.get(), crtc));
    return std::count_if(cookies.begin(), cookies.end(), [&](auto cookie) {
               return isWarm(connection_.get(), cookie) == warm;
           }) == static_cast<std::ptrdiff_t>(cookies.size());
}

std::optional<TableWatch::Clock::time_point> TableWatch::await(bool warm,
                                                               Clock::duration patience) const {
    const Clock::time_point end = Clock::now() + patience;
    Clock::time_point seen{};
    while (!lastIs(warm))
        if (Clock::now() > end)
            return std::nullopt;
    seen = Clock::now();
    while (!allAre(warm)) {
        seen = Clock::now();
        if (seen > end)
            return std::nullopt;
    }
    return seen;
}

bool TableWatch::lastIs(bool warm) const {
    return isWarm(connection_.get(), xcb_randr_get_crtc_gamma(connection_.get(), crtcs_.back())) ==
           warm;
}

} // namespace noctra::bench
