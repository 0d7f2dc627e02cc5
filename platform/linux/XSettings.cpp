#include "platform/linux/XSettings.h"

#include <bit>
#include <cstring>
#include <string>

#include <xcb/xcb.h>

#include "platform/linux/XConnection.h"

namespace noctra {

namespace {

// GTK's name for it, which the settings managers of other toolkits' desktops use as well.
constexpr std::string_view animationsSetting = "Gtk/EnableAnimations";
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

xcb_atom_t atom(xcb_connection_t* xcb, const std::string& name) {
    const auto cookie =
        xcb_intern_atom(xcb, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
    const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(xcb, cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

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

bool XSettings::reducesMotion() const {
    int screen = 0;
    const XcbConnection connection(xcb_connect(nullptr, &screen));
    xcb_connection_t* xcb = connection.get();
    if (xcb_connection_has_error(xcb) != 0)
        return false;
    const auto manager =
        xcb_get_selection_owner(xcb, atom(xcb, "_XSETTINGS_S" + std::to_string(screen)));
    const XcbReply<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(xcb, manager, nullptr));
    if (!owner || owner->owner == XCB_NONE)
        return false;
    const xcb_atom_t settings = atom(xcb, "_XSETTINGS_SETTINGS");
    const auto cookie =
        xcb_get_property(xcb, 0, owner->owner, settings, settings, 0, largestProperty);
    const XcbReply<xcb_get_property_reply_t> property(xcb_get_property_reply(xcb, cookie, nullptr));
    if (!property)
        return false;
    const auto* bytes = static_cast<const std::byte*>(xcb_get_property_value(property.get()));
    const auto size = static_cast<std::size_t>(xcb_get_property_value_length(property.get()));
    return xsettingsInteger({bytes, size}, animationsSetting) == 0;
}

} // namespace noctra
