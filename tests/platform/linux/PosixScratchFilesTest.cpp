#include "platform/linux/PosixScratchFiles.h"

#include <filesystem>
#include <string>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"

namespace noctra {

TEST(PosixScratchFiles, NeverWriteThroughALinkOrIntoAnythingButAPlainFile) {
    const test::TemporaryFolder folder;
    PosixScratchFiles files;
    const auto path = [&](const char* name) {
        return (folder / name).string();
    };

    EXPECT_NE(files.append(path("plain"), "x"), "") << "does not exist yet";
    EXPECT_EQ(files.create(path("plain"), "old and longer\n"), "");
    EXPECT_EQ(files.create(path("plain"), "new\n"), "");
    EXPECT_EQ(files.append(path("plain"), "more\n"), "");
    EXPECT_EQ(test::readFile(path("plain")), "new\nmore\n");

    test::writeFile(path("victim"), "precious");
    std::filesystem::create_symlink(path("victim"), path("link"));
    std::filesystem::create_hard_link(path("victim"), path("hard"));
    std::filesystem::create_symlink(path("nowhere"), path("dangling"));
    std::filesystem::create_directory(path("folder"));
    ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
    for (const char* name : {"link", "hard", "dangling", "folder", "pipe"}) {
        EXPECT_NE(files.create(path(name), "x"), "") << name;
        EXPECT_NE(files.append(path(name), "x"), "") << name;
    }
    EXPECT_EQ(test::readFile(path("victim")), "precious");
    EXPECT_FALSE(std::filesystem::exists(path("nowhere")));
}

} // namespace noctra
