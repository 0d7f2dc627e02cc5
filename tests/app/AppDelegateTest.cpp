#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "engine/GammaRamp.h"
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

    void hangUp(bool mainThreadIsBusy) {
        launchDimmed();
        desktop.process.whileHeld = [this, mainThreadIsBusy] {
            EXPECT_EQ(desktop.application.terminatedWith, 0);
            if (!mainThreadIsBusy)
                desktop.application.willTerminate();
        };
        ASSERT_TRUE(desktop.process.deliver(TerminationSignal::hangUp));
        EXPECT_EQ(desktop.process.endedWith, 0);
        EXPECT_EQ(desktop.log.count("App terminating - restoring gamma"), 1U);
        expectRestoredForGood();
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

TEST_F(AppDelegateTest, StartsTheEngineBeforeAnythingElse) {
    delegate.applicationDidFinishLaunching();
    EXPECT_EQ(desktop.log.messages.front(), "ColorFilterManager init starting");
    EXPECT_EQ(desktop.log.messages.back(), "App launched successfully");
    EXPECT_TRUE(desktop.application.isAgent);
    EXPECT_FALSE(desktop.process.endedWith);
}

TEST_F(AppDelegateTest, SaysWhatIsMissingWhereNoCommandCanArrive) {
    desktop.urls.missing = "no session bus";
    delegate.applicationDidFinishLaunching();
    EXPECT_EQ(desktop.log.count("Automation commands from other programs unavailable: "
                                "no session bus"),
              1U);
    EXPECT_EQ(desktop.log.messages.back(), "App launched successfully");
}

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
        EXPECT_TRUE(desktop.urls.handlers) << "that belongs to normal termination";
        EXPECT_FALSE(desktop.process.deliver(signal)) << "a second one changes nothing";
        desktop.process.lastResort();
        EXPECT_EQ(brightnessRestores.size(), 2U) << "also where the display server hangs";
        EXPECT_EQ(brightnessRestores.back(), line) << "which must not be waited for again";
        expectRestoredForGood();
    }
}

TEST_F(AppDelegateTest, TerminatesNormallyAtAHangUp) {
    hangUp(false);
    EXPECT_FALSE(desktop.urls.handlers);
}

TEST_F(AppDelegateTest, RestoresByItselfAtAHangUpIfTheMainThreadDoesNot) {
    hangUp(true);
    EXPECT_TRUE(desktop.urls.handlers);
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

TEST_F(AppDelegateTest, AppliesCommandsAtOnceInTheOrderInWhichTheyArrive) {
    delegate.applicationDidFinishLaunching();
    engine->intensity = 0.5;
    desktop.displays.forgetCalls();
    desktop.log.messages.clear();
    const auto open = [&](const char* url) {
        desktop.urls.handlers->open(url);
    };

    open("noctra://ON?x");
    EXPECT_EQ(desktop.log.messages,
              (std::vector<std::string>{"Automation URL received: noctra://ON?x",
                                        "Automation command applied: on"}));
    GammaTables warm;
    scaleGammaTables(SimulatedDisplays::linearTables(), ColorTemperatureCurve::normalizedRGB(0.5),
                     1.0, warm);
    EXPECT_EQ(desktop.displays.tablesOf(1), warm);

    open("noctra://on"); // applied again, though it is on
    EXPECT_EQ(restores(), 2U);
    open("noctra://toggle");
    EXPECT_FALSE(engine->isEnabled);
    open("noctra://toggle");
    open("noctra://off");
    EXPECT_FALSE(engine->isEnabled);
    EXPECT_EQ(restores(), 5U);

    desktop.log.messages.clear();
    desktop.urls.handlers->activate();
    open("noctra://show");
    EXPECT_EQ(desktop.log.count("Automation command applied: show"), 2U);
    EXPECT_EQ(popover->showings, 1);
    EXPECT_EQ(restores(), 5U);
}

TEST_F(AppDelegateTest, IgnoresABadUrlWithOneLineThatDoesNotRepeatIt) {
    launchDimmed();
    for (const std::string& url : {std::string("noctra://dim"), std::string(1 << 20, 'x')}) {
        desktop.urls.handlers->open(url);
        EXPECT_EQ(desktop.log.messages, std::vector<std::string>{"Ignored invalid automation URL"});
        desktop.log.messages.clear();
    }
    EXPECT_EQ(restores(), 0U);
    EXPECT_TRUE(engine->isEnabled);
}

TEST_F(AppDelegateTest, RunsTheIconTestAndQuitsWhereTheEnvironmentAsksForExactlyThat) {
    for (const char* value : {"", "true", "01", " 1"}) {
        desktop.process.setEnvironment("NOCTRA_MENUBAR_ICON_TEST", value);
        delegate.applicationDidFinishLaunching();
        desktop.advance(Seconds(2));
        EXPECT_FALSE(desktop.application.terminatedWith) << value;
    }
    const std::string report = "/tmp/noctra_menubar_icon_test.txt";
    struct Case {
        bool writable;
        bool hasImage;
    };
    for (const Case& known : {Case{true, true}, Case{true, false}, Case{false, true}}) {
        const bool writable = known.writable;
        const bool hasImage = known.hasImage;
        desktop.statusBar.hasButtons = hasImage;
        desktop.files.error = writable ? "" : "no space";
        desktop.files.contents.clear();
        desktop.log.messages.clear();
        desktop.application.terminatedWith.reset();
        desktop.process.setEnvironment("NOCTRA_MENUBAR_ICON_TEST", "1");
        delegate.applicationDidFinishLaunching();
        desktop.advance(Seconds(1.39));
        EXPECT_FALSE(desktop.application.terminatedWith);
        desktop.advance(Seconds(0.02));
        EXPECT_EQ(desktop.application.terminatedWith, 0);

        const auto dumped = [&](const std::string& name) -> std::string {
            if (!hasImage)
                return "failed (no image)";
            const std::string path = "/tmp/noctra_menubar_" + name + ".png";
            EXPECT_EQ(desktop.files.contents[path],
                      writable ? "PNG of /icons/" + name + ".pdf" : "");
            return writable ? "-> " + path : "write failed: no space";
        };
        const std::vector<std::string> steps{
            "NOCTRA_MENUBAR_ICON_TEST=1 enabled (will swap icons and quit)",
            "Menu bar icon -> OFF",
            "dumpStatusIcon(off) " + dumped("off"),
            "Menu bar icon -> ACTIVE",
            "dumpStatusIcon(active) " + dumped("active"),
            "Menu bar icon test complete -> terminating"};
        for (const std::string& step : steps)
            EXPECT_EQ(desktop.log.count(step), 1U) << step;

        EXPECT_EQ(desktop.files.contents.contains(report), writable);
        if (!writable)
            continue;
        std::istringstream lines(desktop.files.contents[report]);
        std::string line;
        std::getline(lines, line);
        EXPECT_EQ(line, "Noctra2 menu bar icon test");
        for (const std::string& step : steps) {
            std::getline(lines, line);
            EXPECT_EQ(line.substr(0, 17), "1970-01-01 00:00:");
            EXPECT_EQ(line.substr(19), " +0000: " + step);
        }
        EXPECT_FALSE(std::getline(lines, line));
    }
}

} // namespace noctra
