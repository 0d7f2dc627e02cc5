#include "platform/linux/calibration/CalibrationLookup.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include <sys/stat.h>

#include "platform/linux/calibration/IccProfileProperty.h"
#include "platform/linux/calibration/ProfileFile.h"
#include "platform/linux/calibration/VcgtTables.h"
#include "tests/desktop/support/TemporaryFolder.h"
#include "tests/desktop/support/XConnection.h"
#include "tests/desktop/support/XServer.h"
#include "tests/platform/linux/calibration/FakeColord.h"
#include "tests/platform/linux/calibration/VcgtProfiles.h"

namespace noctra::test {
namespace {

/// An X server with two monitors, and the properties in which their profiles are.
class CalibrationLookupTest : public ColordTest {
protected:
    [[nodiscard]] IccProfile found(xcb_randr_output_t output) const {
        return iccProfileOf(x_.get(), x_.root(), output);
    }
    void makePrimary(xcb_randr_output_t output) const {
        xcb_randr_set_output_primary(x_.get(), x_.root(), output);
    }
    /// `format` is the number of bits in a unit of the property.
    void setRoot(const char* name, const IccProfile& value, std::uint8_t format = 8) const {
        xcb_change_property(x_.get(), XCB_PROP_MODE_REPLACE, x_.root(), atom(name),
                            XCB_ATOM_CARDINAL, format, units(value, format), value.data());
    }
    void setOutput(xcb_randr_output_t output, const IccProfile& value, std::uint8_t format = 8,
                   std::uint8_t mode = XCB_PROP_MODE_REPLACE) const {
        xcb_randr_change_output_property(x_.get(), output, atom("_ICC_PROFILE"), XCB_ATOM_CARDINAL,
                                         format, mode, units(value, format), value.data());
    }

    const desktop::XServer server_{2};
    const desktop::XConnection x_{server_.display()};
    const xcb_randr_output_t first_ = output(0);
    const xcb_randr_output_t second_ = output(1);

private:
    [[nodiscard]] xcb_randr_output_t output(int index) const {
        return xcb_randr_get_screen_resources_current_outputs(x_.resources().get())[index];
    }
    static std::uint32_t units(const IccProfile& value, std::uint8_t format) {
        return static_cast<std::uint32_t>(value.size() * 8 / format);
    }
    [[nodiscard]] xcb_atom_t atom(const std::string& name) const {
        const auto length = static_cast<std::uint16_t>(name.size());
        const auto request = xcb_intern_atom(x_.get(), 0, length, name.c_str());
        return desktop::XConnection::answered(xcb_intern_atom_reply(x_.get(), request, nullptr),
                                              "atom")
            ->atom;
    }
};

/// Bytes that do not repeat themselves in step with the pieces of a property.
IccProfile bytes(std::size_t size, unsigned seed) {
    IccProfile profile(size);
    for (std::size_t k = 0; k < size; ++k)
        profile[k] = static_cast<std::byte>((k * 7 + k / 251 + seed) & 255U);
    return profile;
}

TEST_F(CalibrationLookupTest, TheOutputsOwnPropertyComesFirstThenThatOfItsMonitor) {
    const IccProfile none, a = bytes(400, 1), b = bytes(401, 2), c = bytes(402, 3);
    const auto expect = [&](const char* situation, const IccProfile& ofFirst,
                            const IccProfile& ofSecond) {
        EXPECT_TRUE(found(first_) == ofFirst) << situation << ", first output";
        EXPECT_TRUE(found(second_) == ofSecond) << situation << ", second output";
    };
    makePrimary(first_);
    expect("nobody has ever named the property", none, none);
    setRoot("_ICC_PROFILE_1", b);
    expect("only the second monitor has one", none, b);
    setRoot("_ICC_PROFILE", a);
    expect("both monitors have one", a, b);
    makePrimary(second_);
    expect("the monitors have changed places", b, a);
    setOutput(second_, c);
    expect("one output has its own", b, c);
    for (const std::uint8_t format : {16, 32}) {
        setOutput(second_, bytes(400, 4), format);
        expect("it is not made of bytes", b, a);
    }
    setRoot("_ICC_PROFILE_1", bytes(400, 5), 32);
    expect("neither is the monitor's", none, a);
    EXPECT_TRUE(found(4711).empty()) << "no such output";
}

TEST_F(CalibrationLookupTest, LargePropertiesArriveWholeUpToTheLimitWhileTheServerIsThere) {
    makePrimary(first_);
    constexpr std::size_t piece = std::size_t{256} * 1024;
    for (const std::size_t size : {piece, 3 * piece + 3}) {
        const IccProfile profile = bytes(size, 6);
        setOutput(first_, profile);
        EXPECT_TRUE(found(first_) == profile) << size << " bytes at the output";
        setOutput(first_, {});
        setRoot("_ICC_PROFILE", profile);
        EXPECT_TRUE(found(first_) == profile) << size << " bytes at the root window";
    }
    setRoot("_ICC_PROFILE", {});
    for (int count = 0; count < 4; ++count)
        setOutput(first_, bytes(largestIccProfile / 4, 7), 8, XCB_PROP_MODE_APPEND);
    EXPECT_EQ(found(first_).size(), largestIccProfile);
    setOutput(first_, {std::byte{1}}, 8, XCB_PROP_MODE_APPEND);
    EXPECT_TRUE(found(first_).empty());

    setOutput(first_, bytes(400, 8));
    EXPECT_FALSE(found(first_).empty());
    server_.killAtOnce();
    EXPECT_TRUE(found(first_).empty());
}

TEST_F(CalibrationLookupTest, ColordsProfileComesBeforeTheProperty) {
    const desktop::TemporaryFolder folder;
    bus_->start();
    const FakeColord colord(*bus_, folder.path());
    const IccProfile ofColord = profileWith(Vcgt::formula, Curve{1.1});
    const IccProfile ofProperty = profileWith(Vcgt::formula, Curve{1.2});
    const IccProfile without = profileWith(Vcgt::none);
    const std::string file = folder / "calibrated.icc";
    desktop::writeFile(file, asText(ofColord));
    desktop::writeFile(folder / "uncalibrated.icc", asText(without));

    const struct {
        const char* situation;
        const char* name;
        IccProfile property;
        IccProfile expected;
        std::string source;
    } cases[] = {
        {"both", "calibrated", ofProperty, ofColord, "colord: " + file},
        {"colord's has no tables", "uncalibrated", ofProperty, ofProperty, "_ICC_PROFILE"},
        {"colord's cannot be read", "missing", ofProperty, ofProperty, "_ICC_PROFILE"},
        {"neither has tables", "uncalibrated", without, without, ""},
    };
    CalibrationLookup lookup(x_.get(), x_.root());
    for (const auto& [situation, name, property, expected, source] : cases) {
        SCOPED_TRACE(situation);
        setOutput(first_, property);
        lookup.beginPass(std::chrono::seconds(10));
        const auto tables = lookup.tablesFor(first_, name, 64);
        EXPECT_EQ(tables ? tables->source : "", source);
        EXPECT_EQ(tables ? std::optional(tables->tables) : std::nullopt, vcgtTables(expected, 64));
    }
}

TEST(ProfileFile, OnlyRegularFilesOfASensibleSizeAreRead) {
    const desktop::TemporaryFolder folder;
    const std::string contents("\1\0\377", 3);
    desktop::writeFile(folder / "some.icc", contents);
    std::filesystem::create_symlink(folder / "some.icc", folder / "link.icc");
    ASSERT_EQ(::mkfifo((folder / "pipe.icc").c_str(), 0600), 0);
    for (const char* name : {"empty.icc", "large.icc", "too-large.icc"})
        desktop::writeFile(folder / name, "");
    std::filesystem::resize_file(folder / "large.icc", largestIccProfile);
    std::filesystem::resize_file(folder / "too-large.icc", largestIccProfile + 1);

    const struct {
        std::string path;
        std::string expected;
    } cases[] = {
        {folder / "some.icc", contents},
        {folder / "link.icc", contents},
        {folder / "large.icc", std::string(largestIccProfile, '\0')},
        {folder / "too-large.icc", ""},
        {folder / "empty.icc", ""},
        {folder / "missing.icc", ""},
        {folder.path(), ""},
        {folder / "pipe.icc", ""},
        {"/dev/zero", ""},
    };
    for (const auto& [path, expected] : cases)
        EXPECT_TRUE(asText(readProfileFile(path)) == expected) << path;
}

} // namespace
} // namespace noctra::test
