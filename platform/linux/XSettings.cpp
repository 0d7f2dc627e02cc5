#include "platform/linux/XSettings.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstring>
#include <string>
#include <vector>

#include "platform/linux/Xcb.h"

namespace noctra {

namespace {

// GTK's name for animations, which the settings managers of other desktops use, too.
constexpr std::string_view animationsSetting = "Gtk/EnableAnimations";
constexpr std::string_view scaleSetting = "Gdk/WindowScalingFactor";
constexpr std::string_view dpiSetting = "Xft/DPI";
constexpr int dpiUnits = 1024;   // of that setting, for one dot per inch
constexpr int dpiOfAScale = 144; // letters of this size stand for a scale; 96 is unscaled
constexpr int largestScale = 4;
// In units of 4 bytes. A manager's property has a few kilobytes.
constexpr std::uint32_t largestProperty = 1U << 18;

/// Reads forwards through bytes; once they have run out, everything is 0 and `ok` is false.
class Reader {
public:
    explicit Reader(std::span<const std::byte> bytes) : bytes_(bytes) {}

    void setBigEndian(bool bigEndian) {
        swaps_ = bigEndian != (std::endian::native == std::endian::big);
    }

    template <typename Number>
    Number number() {
        const std::span<const std::byte> bytes = take(sizeof(Number));
        Number value{};
        if (bytes.empty())
            return value;
        std::memcpy(&value, bytes.data(), sizeof value);
        if (swaps_) {
            Number swapped{};
            for (std::size_t i = 0; i < sizeof value; ++i)
                swapped = static_cast<Number>(swapped | ((value >> (8 * i)) & 0xFF)
                                                            << (8 * (sizeof value - 1 - i)));
            value = swapped;
        }
        return value;
    }

    /// `size` bytes and what pads them to a multiple of 4.
    std::span<const std::byte> padded(std::size_t size) {
        const std::span<const std::byte> bytes = take(size);
        take((4 - size % 4) % 4);
        return bytes;
    }

    [[nodiscard]] bool ok() const { return ok_; }

private:
    std::span<const std::byte> take(std::size_t size) {
        ok_ = ok_ && size <= bytes_.size();
        if (!ok_)
            return {};
        const auto taken = bytes_.first(size);
        bytes_ = bytes_.subspan(size);
        return taken;
    }

    std::span<const std::byte> bytes_;
    bool swaps_ = false;
    bool ok_ = true;
};

enum SettingType : std::uint8_t { integerType = 0, stringType = 1, colorType = 2 };

/// A connection of its own to the X server that DISPLAY names, which may be broken.
class Server {
public:
    [[nodiscard]] bool isBroken() const { return xcb_connection_has_error(xcb()) != 0; }
    /// The settings manager's property; empty where there is none.
    [[nodiscard]] std::vector<std::byte> settings() const {
        if (isBroken())
            return {};
        const auto [selection, name] =
            internAtoms(xcb(), {"_XSETTINGS_S" + std::to_string(screen_), "_XSETTINGS_SETTINGS"});
        const xcb_window_t manager = selectionOwner(xcb(), selection);
        return manager != XCB_NONE ? property(manager, name, name) : std::vector<std::byte>();
    }
    [[nodiscard]] xcb_window_t root() const {
        auto screen = xcb_setup_roots_iterator(xcb_get_setup(xcb()));
        for (int left = screen_; screen.rem > 1 && left > 0; --left)
            xcb_screen_next(&screen);
        return screen.data->root;
    }
    [[nodiscard]] std::vector<std::byte> property(xcb_window_t window, xcb_atom_t name,
                                                  xcb_atom_t type) const {
        const auto cookie = xcb_get_property(xcb(), 0, window, name, type, 0, largestProperty);
        const XcbReply<xcb_get_property_reply_t> reply(
            xcb_get_property_reply(xcb(), cookie, nullptr));
        if (!reply)
            return {};
        const auto* bytes = static_cast<const std::byte*>(xcb_get_property_value(reply.get()));
        return {bytes, bytes + xcb_get_property_value_length(reply.get())};
    }

private:
    [[nodiscard]] xcb_connection_t* xcb() const { return connection_.get(); }

    int screen_ = 0;
    const XcbConnection connection_{xcb_connect(nullptr, &screen_)};
};

} // namespace

std::optional<std::int32_t> xsettingsInteger(std::span<const std::byte> property,
                                             std::string_view name) {
    Reader reader(property);
    const std::span<const std::byte> byteOrder = reader.padded(1);
    if (!reader.ok())
        return std::nullopt;
    reader.setBigEndian(byteOrder[0] == std::byte{1});
    reader.number<std::uint32_t>(); // serial number
    const auto count = reader.number<std::uint32_t>();
    for (std::uint32_t i = 0; i < count && reader.ok(); ++i) {
        const auto type = reader.number<std::uint8_t>();
        reader.number<std::uint8_t>(); // padding
        const auto length = reader.number<std::uint16_t>();
        const std::span<const std::byte> nameBytes = reader.padded(length);
        reader.number<std::uint32_t>(); // serial number of the last change
        const bool wanted = std::string_view(reinterpret_cast<const char*>(nameBytes.data()),
                                             nameBytes.size()) == name;
        if (type == integerType) {
            const auto value = reader.number<std::uint32_t>();
            if (wanted && reader.ok())
                return std::bit_cast<std::int32_t>(value);
        } else if (type == stringType) {
            reader.padded(reader.number<std::uint32_t>());
        } else if (type == colorType) {
            reader.number<std::uint64_t>();
        } else {
            return std::nullopt;
        }
    }
    return std::nullopt;
}

std::optional<int> dpiInResources(std::string_view resources) {
    constexpr std::string_view key = "Xft.dpi:";
    while (!resources.empty()) {
        std::string_view line = resources.substr(0, resources.find('\n'));
        resources.remove_prefix(std::min(resources.size(), line.size() + 1));
        if (!line.starts_with(key))
            continue;
        line.remove_prefix(key.size());
        line.remove_prefix(std::min(line.size(), line.find_first_not_of(" \t")));
        int dpi = 0;
        if (std::from_chars(line.data(), line.data() + line.size(), dpi).ec == std::errc())
            return dpi;
    }
    return std::nullopt;
}

bool XSettings::reducesMotion() const {
    const Server server;
    return xsettingsInteger(server.settings(), animationsSetting) == 0;
}

int unannouncedScale() {
    const Server server;
    if (server.isBroken())
        return 1;
    const std::vector<std::byte> settings = server.settings();
    const std::vector<std::byte> resources =
        server.property(server.root(), XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING);
    const std::string_view text(reinterpret_cast<const char*>(resources.data()), resources.size());
    const int scale = xsettingsInteger(settings, scaleSetting).value_or(1);
    const int dpi = std::max(xsettingsInteger(settings, dpiSetting).value_or(0) / dpiUnits,
                             dpiInResources(text).value_or(0));
    return dpi < dpiOfAScale && scale <= largestScale ? std::max(scale, 1) : 1;
}

} // namespace noctra
