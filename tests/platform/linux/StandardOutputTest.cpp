#include "platform/linux/StandardOutput.h"

#include <chrono>
#include <csignal>
#include <string>

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/linux/LinuxSystem.h"
#include "platform/linux/RuntimeDirectory.h"

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

TEST(StandardOutput, DropsLinesInsteadOfWaitingForAReaderThatHasStopped) {
    Pipe pipe;
    StandardOutput output(pipe.ends[1]);
    const std::string line(1000, 'x');
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 500; ++i) // far more than a pipe holds
        output.writeLine(line);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2))
        << "the wait for the reader is not paid again for each line";
    const std::string first = pipe.drain();
    EXPECT_EQ(first.substr(0, 1001), line + "\n");
    output.writeLine("reads again");
    EXPECT_EQ(pipe.drain(), "reads again\n");
}

TEST(StandardOutput, IgnoresAReaderThatHasGone) {
    std::signal(SIGPIPE, SIG_IGN); // as in the program
    Pipe pipe;
    StandardOutput output(pipe.ends[1]);
    ::close(std::exchange(pipe.ends[0], -1));
    output.writeLine("nobody reads this");
    StandardOutput closed(-1);
    closed.writeLine("nor this");
}

TEST(LinuxSystem, FindsTheDistributionsNameInEveryWayItMayBeQuoted) {
    EXPECT_EQ(prettyName("ID=x\nPRETTY_NAME=\"Some Linux 12\"\n"), "Some Linux 12");
    EXPECT_EQ(prettyName("PRETTY_NAME='Some Linux'"), "Some Linux");
    EXPECT_EQ(prettyName("PRETTY_NAME=Plain\n"), "Plain");
    EXPECT_EQ(prettyName("NAME=x\nXPRETTY_NAME=no"), "");
    EXPECT_EQ(prettyName("PRETTY_NAME=\""), "\"");
}

TEST(RuntimeDirectory, NamesOneRecordPerXServerWhateverTheScreen) {
    EXPECT_EQ(tableRecordName(":0"), "tables-:0");
    EXPECT_EQ(tableRecordName(":0.1"), "tables-:0");
    EXPECT_EQ(tableRecordName("host.example:10.0"), "tables-host.example:10");
    EXPECT_EQ(tableRecordName("/tmp/x/y:0"), "tables-_tmp_x_y:0");
}

} // namespace noctra
