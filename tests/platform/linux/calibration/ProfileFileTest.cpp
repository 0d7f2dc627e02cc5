#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/calibration/ProfileFile.h"
#include "tests/platform/linux/calibration/ScratchFolder.h"

namespace noctra::test {
namespace {

TEST(ProfileFile, onlyRegularFilesOfASensibleSizeAreRead) {
    const IccProfile contents{std::byte{1}, std::byte{0}, std::byte{255}};
    const std::string file = writeScratchFile("some.icc", contents);
    const std::string link = scratchFolder() / "link.icc";
    ASSERT_EQ(::symlink(file.c_str(), link.c_str()), 0);
    const std::string pipe = scratchFolder() / "pipe.icc";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const std::string large = writeScratchFile("large.icc", {});
    ASSERT_EQ(::truncate(large.c_str(), static_cast<off_t>(largestIccProfile)), 0);
    const std::string tooLarge = writeScratchFile("too-large.icc", {});
    ASSERT_EQ(::truncate(tooLarge.c_str(), static_cast<off_t>(largestIccProfile) + 1), 0);

    const struct {
        std::string path;
        IccProfile expected;
    } cases[] = {
        {file, contents},
        {link, contents},
        {large, IccProfile(largestIccProfile)},
        {tooLarge, {}},
        {writeScratchFile("empty.icc", {}), {}},
        {scratchFolder() / "missing.icc", {}},
        {scratchFolder(), {}},
        {pipe, {}},
        {"/dev/zero", {}},
    };
    for (const auto& [path, expected] : cases)
        EXPECT_TRUE(readProfileFile(path) == expected) << path;
}

} // namespace
} // namespace noctra::test
