#include "platform/linux/XSettings.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace noctra {

namespace {

/// A settings manager's property.
class Property {
public:
    explicit Property(bool bigEndian) : bigEndian_(bigEndian) { number(bigEndian ? 1 : 0, 1, 4); }

    Property& header(std::uint32_t count) {
        number(7, 4, 4); // serial number
        return number(count, 4, 4);
    }
    Property& integer(const std::string& name, std::uint32_t value) {
        return setting(0, name).number(value, 4, 4);
    }
    Property& string(const std::string& name, const std::string& value) {
        return setting(1, name).number(static_cast<std::uint32_t>(value.size()), 4, 4).text(value);
    }
    Property& color(const std::string& name) {
        return setting(2, name).number(1, 4, 4).number(2, 4, 4);
    }
    Property& setting(std::uint32_t type, const std::string& name) {
        number(type, 1, 2);
        number(static_cast<std::uint32_t>(name.size()), 2, 2);
        return text(name).number(3, 4, 4); // last change
    }
    Property& number(std::uint32_t value, int size, int room) {
        for (int i = 0; i < size; ++i)
            bytes.push_back(
                static_cast<std::byte>(value >> (8 * (bigEndian_ ? size - 1 - i : i)) & 0xFF));
        bytes.resize(bytes.size() + static_cast<std::size_t>(room - size));
        return *this;
    }

    std::vector<std::byte> bytes;

private:
    Property& text(const std::string& text) {
        for (const char letter : text)
            bytes.push_back(static_cast<std::byte>(letter));
        bytes.resize((bytes.size() + 3) / 4 * 4);
        return *this;
    }

    const bool bigEndian_;
};

constexpr const char* wanted = "Gtk/EnableAnimations";

} // namespace

TEST(XSettings, AnIntegerIsFoundBehindSettingsOfAllKindsInBothByteOrders) {
    for (const bool bigEndian : {false, true}) {
        Property property(bigEndian);
        property.header(4)
            .string("Net/ThemeName", "odd")
            .color("Some/Color")
            .integer("Gtk/Enable", 5)
            .integer(wanted, 0xFFFFFFFE);
        EXPECT_EQ(xsettingsInteger(property.bytes, wanted), -2);
        EXPECT_EQ(xsettingsInteger(property.bytes, "Gtk/Enable"), 5);
        EXPECT_EQ(xsettingsInteger(property.bytes, "Net/ThemeName"), std::nullopt);
        EXPECT_EQ(xsettingsInteger(property.bytes, "Gtk"), std::nullopt);

        // Cut short anywhere, there is no such setting, and nothing beyond the end is read.
        for (std::size_t size = 0; size < property.bytes.size(); ++size) {
            const std::vector<std::byte> part(property.bytes.begin(),
                                              property.bytes.begin() + static_cast<long>(size));
            EXPECT_EQ(xsettingsInteger(part, wanted), std::nullopt) << size;
        }
    }
}

TEST(XSettings, BytesThatMakeNoSenseHoldNoSetting) {
    Property kind(false);
    kind.header(2).setting(9, "What/Is").integer(wanted, 0);
    Property length(false);
    length.header(2).setting(1, "Too/Long").number(0xFFFFFFFF, 4, 4).integer(wanted, 0);
    Property count(false);
    count.header(0xFFFFFFFF).integer("Other", 1);
    for (const Property& property : {kind, length, count})
        EXPECT_EQ(xsettingsInteger(property.bytes, wanted), std::nullopt);
}

} // namespace noctra
