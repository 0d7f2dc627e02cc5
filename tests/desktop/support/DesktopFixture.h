#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "tests/desktop/support/CommandChannel.h"
#include "tests/desktop/support/ExpectedTables.h"
#include "tests/desktop/support/GammaProbe.h"
#include "tests/desktop/support/OutputPlugs.h"
#include "tests/desktop/support/TestDesktop.h"
#include "tests/desktop/support/XServer.h"

namespace noctra::desktop {

inline constexpr double presetWarmth = 0.5;
inline constexpr double presetBrightness = 0.6;

/// A session on an X server with three displays, calibrated each in its own way, and the filter
/// preset to some warmth and brightness. The server is shared by the tests of a suite; everything
/// else is new for each test.
class DesktopFixture : public ::testing::Test {
protected:
    static constexpr int displayCount = 3;

    static void TearDownTestSuite();
    void SetUp() override;

    /// Starts the program and waits until it runs.
    [[nodiscard]] std::unique_ptr<Program> startProgram();
    /// Starts the program, waits until it runs and switches the filter on.
    [[nodiscard]] std::unique_ptr<Program> startDimmed();
    /// Hands one command to the running program, and waits until its log says that it is applied.
    void command(const Program& program, const std::string& url);

    /// Starts the program with the remote control and waits until it runs.
    [[nodiscard]] std::unique_ptr<Program>
    startDriven(const std::vector<std::string>& launcher = {});
    /// Asks the remote control until the answer contains `expected`.
    [[nodiscard]] static ::testing::AssertionResult
    answers(const Program& program, const std::string& question, const std::string& expected);

    /// Every CRTC carries to the last bit what it carried when the test began.
    [[nodiscard]] ::testing::AssertionResult isUntouched() const;
    /// The lit CRTCs carry the filtered tables within one step, the dark ones what they carried.
    [[nodiscard]] ::testing::AssertionResult isDimmed(double warmth = presetWarmth,
                                                      double brightness = presetBrightness) const;
    /// The program ends with status 0 and leaves no tint.
    [[nodiscard]] ::testing::AssertionResult endsCleanly(Program& program, int signal) const;

    /// As isUntouched and isDimmed, once the program has had the time that it may take.
    [[nodiscard]] ::testing::AssertionResult becomesUntouched() const;
    [[nodiscard]] ::testing::AssertionResult
    becomesDimmed(double warmth = presetWarmth, double brightness = presetBrightness) const;

    /// The tables from before the program came.
    [[nodiscard]] const TablesByCrtc& tablesBefore() const { return before_; }

    [[nodiscard]] const XServer& server() const { return *server_; }
    [[nodiscard]] const GammaProbe& probe() const { return *probe_; }
    [[nodiscard]] const OutputPlugs& plugs() const { return *plugs_; }
    [[nodiscard]] TestDesktop& desktop() { return *desktop_; }
    [[nodiscard]] CommandChannel& channel();

private:
    static std::unique_ptr<XServer> server_;

    std::unique_ptr<GammaProbe> probe_;
    std::unique_ptr<OutputPlugs> plugs_;
    std::unique_ptr<TestDesktop> desktop_;
    std::unique_ptr<CommandChannel> channel_;
    TablesByCrtc before_;
};

/// The last line that the program logs while it starts.
inline constexpr const char* runningLine = "App launched successfully";
inline constexpr const char* appliedLine = "Automation command applied: ";
inline constexpr const char* busLostLine =
    "Automation commands from other programs unavailable: the session bus went away";
inline constexpr const char* busBackLine =
    "Automation commands from other programs available again";
inline constexpr const char* ignoredLine = "Ignored invalid automation URL";

} // namespace noctra::desktop
