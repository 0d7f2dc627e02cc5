#include <algorithm>
#include <chrono>

#include <gtest/gtest.h>

#include "platform/linux/calibration/CalibrationLookup.h"
#include "platform/linux/calibration/VcgtTables.h"
#include "tests/platform/linux/calibration/DummyXServer.h"
#include "tests/platform/linux/calibration/FakeColord.h"
#include "tests/platform/linux/calibration/PrivateSystemBus.h"
#include "tests/platform/linux/calibration/ScratchFolder.h"
#include "tests/platform/linux/calibration/VcgtProfiles.h"

namespace noctra::test {
namespace {

TEST(CalibrationLookup, colordsProfileComesBeforeTheXProperty) {
    if (!DummyXServer::isInstalled())
        GTEST_SKIP() << "Xorg is not installed";
    const DummyXServer server;
    const auto output = server.firstOutput();
    const PrivateSystemBus bus;
    const FakeColord colord([](const QDBusMessage& call) {
        return FakeColord::rightAnswer(call, scratchFolder().string());
    });
    const Bytes ofColord = profileWithGamma(1.1);
    const Bytes ofProperty = profileWithGamma(1.2);
    const Bytes without = profileWith(std::nullopt);
    const std::string file = writeScratchFile("calibrated.icc", ofColord);
    writeScratchFile("uncalibrated.icc", without);

    const struct {
        const char* situation;
        const char* outputName;
        Bytes property;
        Bytes expected;
        std::string source;
    } cases[] = {
        {"both", "calibrated", ofProperty, ofColord, "colord: " + file},
        {"colord's only", "calibrated", {}, ofColord, "colord: " + file},
        {"colord's has no tables", "uncalibrated", ofProperty, ofProperty, "_ICC_PROFILE"},
        {"colord's cannot be read", "missing", ofProperty, ofProperty, "_ICC_PROFILE"},
        {"neither has tables", "uncalibrated", without, without, ""},
    };
    CalibrationLookup lookup(server.connection(), server.root());
    for (const auto& [situation, name, property, expected, source] : cases) {
        SCOPED_TRACE(situation);
        xcb_randr_change_output_property(
            server.connection(), output, server.atom("_ICC_PROFILE"), XCB_ATOM_CARDINAL, 8,
            XCB_PROP_MODE_REPLACE, static_cast<std::uint32_t>(property.size()), property.data());
        lookup.beginPass(std::chrono::seconds(10));
        const auto found = lookup.tablesFor(output, name, 64);
        EXPECT_EQ(found ? found->source : "", source);
        EXPECT_EQ(found ? std::optional(found->tables) : std::nullopt, vcgtTables(expected, 64));
    }
}

} // namespace
} // namespace noctra::test
