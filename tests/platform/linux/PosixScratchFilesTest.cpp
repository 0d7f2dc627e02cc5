#include "platform/linux/PosixScratchFiles.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <sys/stat.h>

#include <gtest/gtest.h>

namespace noctra {

namespace {

std::string contentsOf(const std::filesystem::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

TEST(PosixScratchFiles, NeverWriteThroughALinkOrIntoAnythingButAPlainFile) {
    char pattern[] = "/tmp/noctra-scratch-XXXXXX";
    const std::filesystem::path folder = ::mkdtemp(pattern);
    PosixScratchFiles files;
    const auto path = [&](const char* name) {
        return (folder / name).string();
    };

    EXPECT_NE(files.append(path("plain"), "x"), "") << "does not exist yet";
    EXPECT_EQ(files.create(path("plain"), "old and longer\n"), "");
    EXPECT_EQ(files.create(path("plain"), "new\n"), "");
    EXPECT_EQ(files.append(path("plain"), "more\n"), "");
    EXPECT_EQ(contentsOf(path("plain")), "new\nmore\n");

    std::ofstream(path("victim")) << "precious";
    std::filesystem::create_symlink(path("victim"), path("link"));
    std::filesystem::create_hard_link(path("victim"), path("hard"));
    std::filesystem::create_symlink(path("nowhere"), path("dangling"));
    std::filesystem::create_directory(path("folder"));
    ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
    for (const char* name : {"link", "hard", "dangling", "folder", "pipe"}) {
        EXPECT_NE(files.create(path(name), "x"), "") << name;
        EXPECT_NE(files.append(path(name), "x"), "") << name;
    }
    EXPECT_EQ(contentsOf(path("victim")), "precious");
    EXPECT_FALSE(std::filesystem::exists(path("nowhere")));
    std::filesystem::remove_all(folder);
}

} // namespace noctra
