#include "platform/linux/tray/BarColour.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <vector>

#include "platform/linux/Xcb.h"

namespace noctra {

namespace {

constexpr int mostPixels = 65536;

/// `length` pixels of `from` to `from + size`, as near to `middle` as they come.
void shorten(int& from, int& size, int length, int middle) {
    length = std::min(length, size);
    from = std::clamp(middle - length / 2, from, from + size - length);
    size = length;
}

/// What of `area` is read: all across a bar, and as much along it as there may be.
PixelRect sampleOf(PixelRect area, PixelPoint near) {
    const int side = static_cast<int>(std::sqrt(mostPixels));
    if (area.width < area.height) {
        shorten(area.x, area.width, side, near.x);
        shorten(area.y, area.height, mostPixels / area.width, near.y);
    } else {
        shorten(area.y, area.height, side, near.y);
        shorten(area.x, area.width, mostPixels / area.height, near.x);
    }
    return area;
}

PixelRect intersection(const PixelRect& a, const PixelRect& b) {
    const int x = std::max(a.x, b.x);
    const int y = std::max(a.y, b.y);
    return {x, y, std::min(a.x + a.width, b.x + b.width) - x,
            std::min(a.y + a.height, b.y + b.height) - y};
}

const xcb_visualtype_t* findVisual(const xcb_setup_t* setup, xcb_visualid_t id) {
    for (auto screen = xcb_setup_roots_iterator(setup); screen.rem > 0; xcb_screen_next(&screen))
        for (auto depth = xcb_screen_allowed_depths_iterator(screen.data); depth.rem > 0;
             xcb_depth_next(&depth))
            for (auto visual = xcb_depth_visuals_iterator(depth.data); visual.rem > 0;
                 xcb_visualtype_next(&visual))
                if (visual.data->visual_id == id)
                    return visual.data;
    return nullptr;
}

bool has32BitsPerPixel(const xcb_setup_t* setup, std::uint8_t depth) {
    const xcb_format_t* first = xcb_setup_pixmap_formats(setup);
    return std::any_of(first, first + xcb_setup_pixmap_formats_length(setup), [&](auto& format) {
        return format.depth == depth && format.bits_per_pixel == 32;
    });
}

/// The channel's 8 highest bits.
std::uint32_t channel(std::uint32_t pixel, std::uint32_t mask) {
    const int top = 32 - std::countl_zero(mask);
    const std::uint32_t bits = pixel & mask;
    return (top >= 8 ? bits >> (top - 8) : bits << (8 - top)) & 0xFF;
}

/// The pixels of `image`, which shows `area`, outside of `exclude`, as 0xRRGGBB.
std::vector<std::uint32_t> pixelsOf(const xcb_setup_t* setup, const xcb_get_image_reply_t& image,
                                    const PixelRect& area, const PixelRect& exclude) {
    const xcb_visualtype_t* visual = findVisual(setup, image.visual);
    const auto size = static_cast<std::size_t>(xcb_get_image_data_length(&image));
    if (visual == nullptr || !has32BitsPerPixel(setup, image.depth) ||
        size < 4U * static_cast<std::size_t>(area.width) * static_cast<std::size_t>(area.height))
        return {};
    const bool swaps = (setup->image_byte_order == XCB_IMAGE_ORDER_MSB_FIRST) !=
                       (std::endian::native == std::endian::big);
    const std::uint8_t* bytes = xcb_get_image_data(&image);
    std::vector<std::uint32_t> pixels;
    for (int y = area.y; y < area.y + area.height; ++y)
        for (int x = area.x; x < area.x + area.width; ++x, bytes += 4) {
            if (exclude.contains({x, y}))
                continue;
            std::uint32_t pixel = 0;
            std::memcpy(&pixel, bytes, sizeof pixel);
            if (swaps)
                pixel = __builtin_bswap32(pixel);
            pixels.push_back(channel(pixel, visual->red_mask) << 16 |
                             channel(pixel, visual->green_mask) << 8 |
                             channel(pixel, visual->blue_mask));
        }
    return pixels;
}

double linear(std::uint32_t channelValue) {
    const double share = channelValue / 255.0;
    return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
}

double luminance(std::uint32_t pixel) {
    return 0.2126 * linear(pixel >> 16 & 0xFF) + 0.7152 * linear(pixel >> 8 & 0xFF) +
           0.0722 * linear(pixel & 0xFF);
}

} // namespace

double prevailingLuminance(std::span<const std::uint32_t> pixels) {
    // Colours are alike that agree in the upper 4 bits of each channel.
    const auto likeness = [](std::uint32_t pixel) {
        return (pixel >> 12 & 0xF00) | (pixel >> 8 & 0x0F0) | (pixel >> 4 & 0x00F);
    };
    struct Kind {
        std::uint32_t count = 0;
        std::uint32_t example = 0;
    };
    std::array<Kind, 4096> kinds{};
    for (const std::uint32_t pixel : pixels) {
        Kind& kind = kinds[likeness(pixel)];
        ++kind.count;
        kind.example = pixel;
    }
    const auto most = std::max_element(kinds.begin(), kinds.end(),
                                       [](auto& a, auto& b) { return a.count < b.count; });
    return luminance(most->example);
}

std::optional<double> barLuminance(xcb_connection_t* connection, xcb_window_t root,
                                   const PixelRect& area, const PixelRect& exclude) {
    const XcbReply<xcb_get_geometry_reply_t> screen(
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, root), nullptr));
    if (!screen)
        return std::nullopt;
    PixelRect sample = intersection(area, {0, 0, screen->width, screen->height});
    if (sample.isEmpty())
        return std::nullopt;
    sample = sampleOf(sample, (exclude.isEmpty() ? sample : exclude).middle());
    const auto cookie = xcb_get_image(
        connection, XCB_IMAGE_FORMAT_Z_PIXMAP, root, static_cast<std::int16_t>(sample.x),
        static_cast<std::int16_t>(sample.y), static_cast<std::uint16_t>(sample.width),
        static_cast<std::uint16_t>(sample.height), ~0U);
    const XcbReply<xcb_get_image_reply_t> image(xcb_get_image_reply(connection, cookie, nullptr));
    if (!image)
        return std::nullopt;
    const std::vector<std::uint32_t> pixels =
        pixelsOf(xcb_get_setup(connection), *image, sample, exclude);
    return pixels.empty() ? std::nullopt : std::optional(prevailingLuminance(pixels));
}

} // namespace noctra
