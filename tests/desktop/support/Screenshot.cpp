#include "tests/desktop/support/Screenshot.h"

#include <algorithm>
#include <cstring>

#include "tests/desktop/support/XConnection.h"

namespace noctra::desktop {

namespace {

constexpr std::uint32_t colorBits = 0xFFFFFF;

} // namespace

Screenshot::Screenshot(const std::string& display, const Box& part) : part_(part) {
    const XConnection connection(display);
    const auto reply = XConnection::answered(
        xcb_get_image_reply(connection.get(),
                            xcb_get_image(connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP,
                                          connection.root(), static_cast<std::int16_t>(part.x),
                                          static_cast<std::int16_t>(part.y),
                                          static_cast<std::uint16_t>(part.width),
                                          static_cast<std::uint16_t>(part.height), ~0U),
                            nullptr),
        "image");
    // The tests' server has 4 bytes for each pixel, in this machine's order.
    pixels_.resize(static_cast<std::size_t>(part.width) * static_cast<std::size_t>(part.height));
    const auto size = static_cast<std::size_t>(xcb_get_image_data_length(reply.get()));
    if (size != pixels_.size() * sizeof(std::uint32_t))
        throw std::runtime_error("the X server's pixels are not of 4 bytes");
    std::memcpy(pixels_.data(), xcb_get_image_data(reply.get()), size);
}

int Screenshot::countOf(std::uint32_t color) const {
    return static_cast<int>(std::ranges::count_if(
        pixels_, [color](std::uint32_t pixel) { return (pixel & colorBits) == color; }));
}

std::optional<Point> Screenshot::middleOf(std::uint32_t color, int least) const {
    int count = 0;
    Point sum;
    for (int i = 0; i < static_cast<int>(pixels_.size()); ++i)
        if ((pixels_[static_cast<std::size_t>(i)] & colorBits) == color) {
            ++count;
            sum.x += i % part_.width;
            sum.y += i / part_.width;
        }
    if (count < least)
        return std::nullopt;
    return Point{part_.x + sum.x / count, part_.y + sum.y / count};
}

} // namespace noctra::desktop
