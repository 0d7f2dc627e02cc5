#include "app/DebugLogger.h"

#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/simulated/SimulatedDesktop.h"

namespace noctra {

namespace {

struct DebugLoggerTest : testing::Test {
    SimulatedDesktop desktop;

    DebugLoggerTest() {
        using namespace std::chrono;
        desktop.wall.set(sys_days{2026y / November / 16} + 9h + 44min + 29s + 107ms);
        desktop.system.screens = 2;
    }

    static std::vector<std::string> linesOf(const std::string& text) {
        std::vector<std::string> lines(1);
        for (const char c : text)
            c == '\n' ? lines.emplace_back() : lines.back() += c;
        return lines;
    }
};

} // namespace

TEST_F(DebugLoggerTest, DropsTheOldestLineAtTheTwoHundredAndFirst) {
    DebugLogger log(desktop.wall, desktop.system, desktop.output);
    for (int i = 0; i < 196; ++i)
        log.log("line");
    log.log("two\nlines"); // one entry
    std::vector<std::string> lines = linesOf(log.getFullLog());
    ASSERT_EQ(lines.size(), 5U + 201U);
    EXPECT_EQ(lines[5], "[09:44:29.107] Noctra v2.23 initialized");
    EXPECT_EQ(lines.back(), "lines");

    log.log("one too many");
    lines = linesOf(log.getFullLog());
    ASSERT_EQ(lines.size(), 5U + 201U);
    EXPECT_EQ(lines[5], "[09:44:29.107] macOS Version 14.2 (Build 23C64)");
    EXPECT_EQ(lines.back(), "[09:44:29.107] one too many");
}

TEST_F(DebugLoggerTest, TakesLinesFromManyThreads) {
    DebugLogger log(desktop.wall, desktop.system, desktop.output);
    {
        std::vector<std::jthread> threads;
        for (int t = 0; t < 4; ++t)
            threads.emplace_back([&] {
                for (int i = 0; i < 300; ++i)
                    log.log("from a thread");
            });
    }
    EXPECT_EQ(desktop.output.lines.size(), 3U + 1200U);
    EXPECT_EQ(linesOf(log.getFullLog()).size(), 5U + 200U);
}

} // namespace noctra
