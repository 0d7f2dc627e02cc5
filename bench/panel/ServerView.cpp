#include "bench/panel/ServerView.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <xcb/xtest.h>

namespace noctra::bench {

using desktop::XConnection;

namespace {

constexpr std::uint8_t leftButton = 1;

} // namespace

ServerView::ServerView(const std::string& display) : eyes_(display), hand_(display) {
    const XConnection::Resources resources = eyes_.resources();
    const xcb_randr_crtc_t* first = xcb_randr_get_screen_resources_current_crtcs(resources.get());
    for (int i = 0; i < resources->num_crtcs; ++i) {
        const auto crtc = XConnection::answered(
            xcb_randr_get_crtc_info_reply(
                eyes_.get(), xcb_randr_get_crtc_info(eyes_.get(), first[i], XCB_CURRENT_TIME),
                nullptr),
            "CRTC");
        if (crtc->mode != XCB_NONE && crtc->num_outputs > 0)
            crtcs_.push_back(first[i]);
    }
    if (crtcs_.empty())
        throw std::runtime_error("the X server has no display");
}

std::vector<std::uint16_t> ServerView::lastTable() const {
    const auto reply = XConnection::answered(
        xcb_randr_get_crtc_gamma_reply(
            eyes_.get(), xcb_randr_get_crtc_gamma(eyes_.get(), crtcs_.back()), nullptr),
        "gamma table");
    const std::uint16_t* green = xcb_randr_get_crtc_gamma_green(reply.get());
    return {green, green + reply->size};
}

double ServerView::awaitOtherTable(const std::vector<std::uint16_t>& before) const {
    const auto start = std::chrono::steady_clock::now();
    const auto passed = [start] {
        return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start)
            .count();
    };
    while (lastTable() == before)
        if (passed() > 1e6)
            return -1.0;
    return passed();
}

std::uint32_t ServerView::pixel(int x, int y) const {
    const auto reply = XConnection::answered(
        xcb_get_image_reply(eyes_.get(),
                            xcb_get_image(eyes_.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, eyes_.root(),
                                          static_cast<std::int16_t>(x),
                                          static_cast<std::int16_t>(y), 1, 1, ~0U),
                            nullptr),
        "pixel");
    std::uint32_t value = 0;
    std::memcpy(&value, xcb_get_image_data(reply.get()),
                std::min<std::size_t>(sizeof value, static_cast<std::size_t>(
                                                        xcb_get_image_data_length(reply.get()))));
    return value & 0xffffff;
}

void ServerView::press() const {
    fake(XCB_BUTTON_PRESS, leftButton, 0, 0);
}

void ServerView::release() const {
    fake(XCB_BUTTON_RELEASE, leftButton, 0, 0);
}

void ServerView::move(int x, int y) const {
    fake(XCB_MOTION_NOTIFY, 0, x, y);
}

void ServerView::fake(std::uint8_t type, std::uint8_t detail, int x, int y) const {
    xcb_test_fake_input(hand_.get(), type, detail, XCB_CURRENT_TIME, hand_.root(),
                        static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0);
    xcb_flush(hand_.get());
}

} // namespace noctra::bench
