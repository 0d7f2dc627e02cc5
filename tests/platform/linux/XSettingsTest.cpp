#include "platform/linux/XSettings.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace noctra {

namespace {

using namespace std::string_literals;

std::vector<std::byte> bytesOf(const std::string& text) {
    std::vector<std::byte> bytes;
    for (const char letter : text)
        bytes.push_back(static_cast<std::byte>(letter));
    return bytes;
}

// The byte order, a serial number and the count; then of each setting its type, the length of its
// name, the name, a serial number and the value. Names and texts are filled up to four bytes.
const std::string littleEndian = "\0\0\0\0\7\0\0\0\4\0\0\0"
                                 "\1\0\5\0Theme\0\0\0\3\0\0\0\3\0\0\0odd\0"
                                 "\2\0\4\0Ring\3\0\0\0\1\0\2\0\3\0\4\0"
                                 "\0\0\12\0Gtk/Enable\0\0\3\0\0\0\5\0\0\0"
                                 "\0\0\24\0Gtk/EnableAnimations\3\0\0\0\xFE\xFF\xFF\xFF"s;
const std::string bigEndian = "\1\0\0\0\0\0\0\7\0\0\0\4"
                              "\1\0\0\5Theme\0\0\0\0\0\0\3\0\0\0\3odd\0"
                              "\2\0\0\4Ring\0\0\0\3\0\1\0\2\0\3\0\4"
                              "\0\0\0\12Gtk/Enable\0\0\0\0\0\3\0\0\0\5"
                              "\0\0\0\24Gtk/EnableAnimations\0\0\0\3\xFF\xFF\xFF\xFE"s;
constexpr const char* wanted = "Gtk/EnableAnimations";

} // namespace

TEST(XSettings, AnIntegerIsFoundBehindSettingsOfAllKindsInBothByteOrders) {
    for (const std::string& property : {littleEndian, bigEndian}) {
        const std::vector<std::byte> bytes = bytesOf(property);
        EXPECT_EQ(xsettingsInteger(bytes, wanted), -2);
        EXPECT_EQ(xsettingsInteger(bytes, "Gtk/Enable"), 5);
        EXPECT_EQ(xsettingsInteger(bytes, "Theme"), std::nullopt);
        EXPECT_EQ(xsettingsInteger(bytes, "Gtk"), std::nullopt);
        EXPECT_EQ(xsettingsInteger(bytesOf(property.substr(0, property.size() - 1)), wanted),
                  std::nullopt);
    }
}

TEST(XSettings, DotsPerInchStandAmongOtherResources) {
    EXPECT_EQ(dpiInResources("Xcursor.size:\t48\nXft.dpi:\t192\nXft.hinting:\t1\n"), 192);
    EXPECT_EQ(dpiInResources("Xft.dpi: 96"), 96);
    for (const char* without : {"", "\n", "Xft.dpi:", "Xft.dpi: many\n", "my.Xft.dpi: 192\n"})
        EXPECT_EQ(dpiInResources(without), std::nullopt) << without;
}

} // namespace noctra
