#include <string>
#include <vector>

#include "tests/app/AppDelegateFixture.h"

namespace noctra {

namespace {

using namespace std::string_literals;

struct AppDelegateTest : AppDelegateFixture {
    void launchDimmed() {
        delegate.applicationDidFinishLaunching();
        engine->brightness = 0.5;
        desktop.urls.handlers->open("noctra://on");
        ASSERT_NE(desktop.displays.tablesOf(1), SimulatedDisplays::linearTables());
        desktop.log.messages.clear();
        desktop.displays.forgetCalls();
    }

    void expectRestoredForGood() {
        EXPECT_EQ(desktop.displays.tablesOf(1), SimulatedDisplays::linearTables());
        engine->brightness = 0.2;
        EXPECT_EQ(desktop.displays.tablesOf(1), SimulatedDisplays::linearTables());
    }

    [[nodiscard]] std::size_t restores() const {
        return desktop.displays.count(SimulatedDisplays::Call::Kind::write);
    }
};

} // namespace

TEST_F(AppDelegateTest, PutsEverythingBackOnceAndEndsAtASignal) {
    for (const auto& [signal, line] :
         {std::pair(TerminationSignal::interrupt, "SIGINT received - restoring gamma"),
          std::pair(TerminationSignal::terminate, "SIGTERM received - restoring gamma")}) {
        engine.reset();
        brightnessRestores.clear();
        launchDimmed();
        ASSERT_TRUE(desktop.process.deliver(signal));
        EXPECT_EQ(desktop.log.messages, std::vector<std::string>{line});
        EXPECT_EQ(brightnessRestores, std::vector<std::string>{line + ", tables repaired"s});
        EXPECT_EQ(restores(), 1U);
        EXPECT_EQ(desktop.process.endedWith, 0);
        EXPECT_LT(desktop.process.endsAfter, Seconds(2)) << "whatever the display server does";
        EXPECT_FALSE(desktop.process.deliver(signal)) << "a second one changes nothing";
        desktop.process.lastResort();
        EXPECT_EQ(brightnessRestores.size(), 2U) << "also where the display server hangs";
        EXPECT_EQ(brightnessRestores.back(), line) << "which must not be waited for again";
        expectRestoredForGood();
    }
}

TEST_F(AppDelegateTest, TerminatesNormallyAtAHangUpOrRestoresByItselfIfTheMainThreadDoesNot) {
    for (const bool mainThreadIsBusy : {false, true}) {
        engine.reset();
        launchDimmed();
        desktop.process.whileHeld = [&] {
            EXPECT_EQ(desktop.application.terminatedWith, 0);
            if (!mainThreadIsBusy)
                desktop.application.willTerminate();
        };
        ASSERT_TRUE(desktop.process.deliver(TerminationSignal::hangUp));
        EXPECT_EQ(desktop.process.endedWith, 0);
        EXPECT_EQ(desktop.urls.handlers.has_value(), mainThreadIsBusy);
        EXPECT_EQ(desktop.log.count("App terminating - restoring gamma"),
                  mainThreadIsBusy ? 0U : 1U)
            << "once a run";
        expectRestoredForGood();
    }
}

TEST_F(AppDelegateTest, PutsEverythingBackTwiceOnAQuit) {
    launchDimmed();
    delegate.quitApp();
    EXPECT_EQ(desktop.application.terminatedWith, 0);
    EXPECT_TRUE(desktop.log.messages.empty());
    EXPECT_EQ(restores(), 1U);
    desktop.application.willTerminate();
    EXPECT_EQ(desktop.log.messages, std::vector<std::string>{"App terminating - restoring gamma"});
    EXPECT_EQ(restores(), 2U);
    EXPECT_EQ(brightnessRestores.size(), 2U);
    EXPECT_FALSE(desktop.urls.handlers);
    EXPECT_TRUE(desktop.process.endsAfter);
    expectRestoredForGood();
}

TEST_F(AppDelegateTest, EndsWithAFailureWhenTheDisplayServerIsGone) {
    launchDimmed();
    delegate.displayServerLost("the connection broke");
    EXPECT_EQ(desktop.log.messages.back(),
              "ERROR: The display server is gone: the connection broke");
    EXPECT_EQ(desktop.application.terminatedWith, 1);

    brightnessRestores.clear();
    delegate.displayServerGone(); // on another connection, which ends the process at once
    EXPECT_EQ(desktop.process.endedWith, 1);
    EXPECT_EQ(brightnessRestores.size(), 1U);
    expectRestoredForGood();
}

} // namespace noctra
