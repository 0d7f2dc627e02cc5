#include "platform/linux/StandardOutput.h"

#include <csignal>
#include <string>

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/linux/LinuxSystem.h"

namespace noctra {

namespace {

struct Pipe {
    int ends[2] = {-1, -1};
    Pipe() { EXPECT_EQ(::pipe2(ends, O_CLOEXEC), 0); }
    ~Pipe() {
        for (const int end : ends)
            if (end >= 0)
                ::close(end);
    }
    std::string drain() {
        ::fcntl(ends[0], F_SETFL, O_NONBLOCK);
        std::string all;
        char buffer[4096];
        for (ssize_t n = 0; (n = ::read(ends[0], buffer, sizeof buffer)) > 0;)
            all.append(buffer, static_cast<std::size_t>(n));
        return all;
    }
};

} // namespace

TEST(StandardOutput, HoldsNobodyUpForAReaderThatHasStoppedAndSaysWhatWasDropped) {
    Pipe pipe;
    std::string all;
    {
        StandardOutput output(pipe.ends[1]);
        const std::string line(1000, 'x');
        for (std::size_t i = 0; i < 3 * StandardOutput::maxWaiting; ++i)
            output.writeLine(line); // far more than a pipe holds: the writer is stuck
        output.drain(Seconds(0.001));
        while (all.find("not read in time") == std::string::npos) {
            all += pipe.drain(); // reads again
            output.writeLine("after");
        }
        EXPECT_EQ(all.substr(0, 1001), line + "\n");
        output.drain(Seconds(10));
    }
    all += pipe.drain();
    EXPECT_EQ(all.substr(all.size() - 6), "after\n");
}

TEST(LinuxSystem, FindsTheDistributionsNameInEveryWayItMayBeQuoted) {
    EXPECT_EQ(prettyName("ID=x\nPRETTY_NAME=\"Some Linux 12\"\n"), "Some Linux 12");
    EXPECT_EQ(prettyName("PRETTY_NAME='Some Linux'"), "Some Linux");
    EXPECT_EQ(prettyName("PRETTY_NAME=Plain\n"), "Plain");
    EXPECT_EQ(prettyName("NAME=x\nXPRETTY_NAME=no"), "");
    EXPECT_EQ(prettyName("PRETTY_NAME=\""), "\"");
}

} // namespace noctra
