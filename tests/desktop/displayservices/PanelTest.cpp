// The built-in panel: the real library on a backlight that stands in for the kernel's, with logind
// played by a mock, refusing, hanging or missing.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/displayservices/HostFunctions.h"
#include "tests/desktop/displayservices/Driver.h"
#include "tests/desktop/displayservices/Surroundings.h"
#include "tests/desktop/support/FakeBacklight.h"
#include "tests/desktop/support/MockLogind.h"
#include "tests/desktop/support/OutputPlugs.h"

namespace noctra::desktop {

namespace {

using namespace std::chrono_literals;

constexpr int full = 1000;
constexpr int prior = 400;

struct Panel : testing::Test {
    void SetUp() override {
        if (!canPutFoldersElsewhere())
            GTEST_SKIP() << "no mount namespace can be made here (root is needed)";
        plugs.plugOnly(1);
        plugs.setBuiltIn(0, true);
    }
    void TearDown() override {
        plugs.setBuiltIn(0, false);
        if (driver) {
            EXPECT_LT(driver->longestCall(), Driver::callLimit);
        }
    }

    void start(const std::vector<std::string>& launcher) {
        driver = std::make_unique<Driver>(
            Driver::Surroundings{{{"DISPLAY", sharedServer().display()},
                                  {"DBUS_SYSTEM_BUS_ADDRESS", bus.address()},
                                  {"XDG_STATE_HOME", folder.path()}},
                                 launcher});
        ASSERT_TRUE(pollUntil(patience, [&] { return driver->get(panel) || canNever; }));
    }
    void start() { start(backlight.launcher()); }
    [[nodiscard]] std::vector<unsigned int> valuesAskedFor(const MockLogind& logind) const {
        std::vector<unsigned int> values;
        for (const auto& call : logind.brightnessCalls()) {
            EXPECT_EQ(call.subsystem, "backlight");
            EXPECT_EQ(call.name, "test_backlight");
            values.push_back(call.value);
        }
        return values;
    }
    [[nodiscard]] bool reaches(int value) const {
        return pollUntil(patience, [&] { return backlight.value() == value; });
    }

    TemporaryFolder folder;
    FakeBacklight backlight{prior};
    SystemBus bus;
    OutputPlugs plugs{sharedServer().display()};
    DisplayId panel = outputIds(sharedServer()).front();
    bool canNever = false;
    std::unique_ptr<Driver> driver;
};

TEST_F(Panel, IsReadFromItsFileAndSetThroughLogind) {
    bus.start();
    const MockLogind logind(bus);
    start();
    EXPECT_TRUE(driver->canChange(panel));
    EXPECT_EQ(driver->get(panel), 0.4F);
    backlight.set(250);
    EXPECT_EQ(driver->get(panel), 0.25F);
    EXPECT_TRUE(driver->set(panel, 0.25F)) << "which it has already";
    EXPECT_TRUE(pollUntil(patience, [&] { return driver->get(panel).has_value(); }));
    EXPECT_TRUE(driver->set(panel, 1));
    EXPECT_TRUE(driver->finish(2000ms));
    EXPECT_THAT(valuesAskedFor(logind), testing::ElementsAre(full));
    EXPECT_EQ(backlight.value(), 250) << "the mock moves nothing, and the file was not needed";
    EXPECT_NE(driver->takeNews() & display_services::backlightWritten, 0U);
}

TEST_F(Panel, IsWrittenThroughItsFileWhereLogindRefusesOrTheBusIsMissingOrHangs) {
    const auto setAndBack = [&](const char* how) {
        start();
        EXPECT_TRUE(driver->setSmooth(panel, 1));
        EXPECT_TRUE(reaches(full)) << how;
        EXPECT_TRUE(pollUntil(patience, [&] { return driver->get(panel) == 1.0F; })) << how;
        EXPECT_TRUE(driver->canChange(panel)) << how;
        EXPECT_TRUE(driver->set(panel, 0.4F));
        EXPECT_TRUE(driver->finish(2000ms)) << how;
        EXPECT_EQ(backlight.value(), prior) << how;
        EXPECT_LT(driver->longestCall(), Driver::callLimit) << how;
    };
    setAndBack("there is no bus");
    bus.start();
    setAndBack("there is no logind");
    {
        const MockLogind logind(bus);
        logind.refuseBrightness(true);
        setAndBack("logind refuses");
    }
    bus.pause();
    setAndBack("the bus hangs");
    bus.resume();
}

TEST_F(Panel, IsPutBackInTheTimeThatThereIsWhereTheBusHangsAtTheEnd) {
    bus.start();
    const MockLogind logind(bus);
    start();
    EXPECT_TRUE(driver->set(panel, 1));
    ASSERT_TRUE(pollUntil(patience, [&] { return !valuesAskedFor(logind).empty(); }));
    bus.pause();
    backlight.set(full);
    EXPECT_TRUE(driver->set(panel, 0.4F));
    EXPECT_TRUE(driver->finish(900ms));
    EXPECT_EQ(backlight.value(), prior);
    bus.resume();
}

TEST_F(Panel, CannotBeChangedWithoutABacklightOrWhereNothingWritesIt) {
    canNever = true;
    std::filesystem::create_directories(folder / "none");
    start(withFolderAt(folder / "none", "/sys/class"));
    EXPECT_FALSE(driver->canChange(panel));
    EXPECT_FALSE(driver->set(panel, 1));
    EXPECT_EQ(driver->get(panel), std::nullopt);

    canNever = false;
    const auto device = folder / "locked/backlight/test_backlight";
    std::filesystem::create_directories(device / "brightness"); // a folder cannot be written to
    writeFile(device / "type", "raw\n");
    writeFile(device / "max_brightness", "1000\n");
    writeFile(device / "actual_brightness", "400\n");
    start(withFolderAt(folder / "locked", "/sys/class"));
    EXPECT_TRUE(driver->canChange(panel));
    EXPECT_TRUE(driver->set(panel, 1));
    EXPECT_TRUE(pollUntil(patience, [&] { return !driver->canChange(panel); }));
    EXPECT_EQ(driver->get(panel), 0.4F);
    EXPECT_NE(driver->takeNews() & display_services::controllabilityChanged, 0U);
}

TEST_F(Panel, IsPutBackAlsoWhileTheLidIsClosed) {
    plugs.plugOnly(2);
    start();
    EXPECT_TRUE(driver->set(panel, 1));
    EXPECT_TRUE(reaches(full));
    plugs.unplug(0);
    EXPECT_TRUE(pollUntil(patience, [&] { return !driver->canChange(panel); }));
    EXPECT_EQ(driver->get(panel), std::nullopt);
    EXPECT_TRUE(driver->set(panel, 0.4F));
    EXPECT_TRUE(driver->finish(2000ms));
    EXPECT_EQ(backlight.value(), prior);
}

} // namespace

} // namespace noctra::desktop
