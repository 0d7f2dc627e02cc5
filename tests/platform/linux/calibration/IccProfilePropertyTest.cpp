#include <string>

#include <gtest/gtest.h>

#include "platform/linux/calibration/IccProfileProperty.h"
#include "tests/platform/linux/calibration/DummyXServer.h"

namespace noctra::test {
namespace {

class IccProfileProperty : public testing::Test {
protected:
    void SetUp() override {
        if (!DummyXServer::isInstalled())
            GTEST_SKIP() << "Xorg is not installed";
        server_.emplace();
        ASSERT_EQ(xcb_connection_has_error(server_->connection()), 0);
    }

    [[nodiscard]] IccProfile found(xcb_randr_output_t output) const {
        return iccProfileOf(server_->connection(), server_->root(), output);
    }

    void setRoot(const std::string& name, const IccProfile& value, std::uint8_t format = 8) const {
        xcb_change_property(server_->connection(), XCB_PROP_MODE_REPLACE, server_->root(),
                            server_->atom(name), XCB_ATOM_CARDINAL, format, units(value, format),
                            value.data());
    }

    void setOutput(xcb_randr_output_t output, const IccProfile& value, std::uint8_t format = 8,
                   std::uint8_t mode = XCB_PROP_MODE_REPLACE) const {
        xcb_randr_change_output_property(server_->connection(), output,
                                         server_->atom("_ICC_PROFILE"), XCB_ATOM_CARDINAL, format,
                                         mode, units(value, format), value.data());
    }

    /// Bytes that do not repeat themselves in step with the pieces of a property.
    static IccProfile bytes(std::size_t size, unsigned seed) {
        IccProfile profile(size);
        for (std::size_t k = 0; k < size; ++k)
            profile[k] = static_cast<std::byte>((k * 7 + k / 251 + seed) & 255U);
        return profile;
    }

    static std::uint32_t units(const IccProfile& value, std::uint8_t format) {
        return static_cast<std::uint32_t>(value.size() * 8 / format);
    }

    std::optional<DummyXServer> server_;
};

TEST_F(IccProfileProperty, theOutputsOwnComesFirstThenThatOfItsMonitor) {
    const auto first = server_->firstOutput();
    const auto second = server_->secondOutput();
    const IccProfile none, a = bytes(400, 1), b = bytes(401, 2), c = bytes(402, 3);
    const auto expect = [&](const char* situation, const IccProfile& ofFirst,
                            const IccProfile& ofSecond) {
        EXPECT_TRUE(found(first) == ofFirst) << situation << ", first output";
        EXPECT_TRUE(found(second) == ofSecond) << situation << ", second output";
    };
    expect("nobody has ever named the property", none, none);
    setRoot("_ICC_PROFILE_1", b);
    expect("only the second monitor has one", none, b);
    setRoot("_ICC_PROFILE", a);
    expect("both monitors have one", a, b);
    server_->makePrimary(second);
    expect("the monitors have changed places", b, a);
    setOutput(second, c);
    expect("one output has its own", b, c);
    for (const std::uint8_t format : {16, 32}) {
        setOutput(second, bytes(400, 4), format);
        expect("it is not made of bytes", b, a);
    }
    setRoot("_ICC_PROFILE_1", bytes(400, 5), 32);
    expect("neither is the monitor's", none, a);
    EXPECT_TRUE(found(4711).empty()) << "no such output";
}

TEST_F(IccProfileProperty, largeProfilesArriveWholeUpToTheLimit) {
    const auto output = server_->firstOutput();
    constexpr std::size_t piece = 256 * 1024;
    for (const std::size_t size : {std::size_t{1}, piece - 1, piece, piece + 1, 3 * piece + 3}) {
        const IccProfile profile = bytes(size, 6);
        setOutput(output, profile);
        EXPECT_TRUE(found(output) == profile) << size << " bytes at the output";
        setRoot("_ICC_PROFILE", profile);
        setOutput(output, {});
        EXPECT_TRUE(found(output) == profile) << size << " bytes at the root window";
    }

    const IccProfile quarter = bytes(largestIccProfile / 4, 7);
    for (int count = 0; count < 4; ++count)
        setOutput(output, quarter, 8, XCB_PROP_MODE_APPEND);
    EXPECT_EQ(found(output).size(), largestIccProfile);
    setRoot("_ICC_PROFILE", {});
    setOutput(output, {std::byte{1}}, 8, XCB_PROP_MODE_APPEND);
    EXPECT_TRUE(found(output).empty());
}

TEST_F(IccProfileProperty, aServerThatHasGoneHasNone) {
    setOutput(server_->firstOutput(), bytes(400, 8));
    ASSERT_FALSE(found(server_->firstOutput()).empty());
    server_->end();
    EXPECT_TRUE(found(server_->firstOutput()).empty());
}

} // namespace
} // namespace noctra::test
