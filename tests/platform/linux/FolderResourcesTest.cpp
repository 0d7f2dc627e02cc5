#include "platform/linux/FolderResources.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"

namespace noctra {

namespace fs = std::filesystem;

TEST(FolderResources, ComeFromTheFirstFolderThatHasTheFileItself) {
    const test::TemporaryFolder home;
    fs::create_directories(home / "one/icons/active.pdf");
    const auto add = [&](const char* file) {
        fs::create_directories((home / file).parent_path());
        test::writeFile(home / file, "x");
        return home / file;
    };
    const FolderResources resources(
        {home / "none", home / "one", home / "two/../two", home / "three"});
    EXPECT_EQ(resources.path("active", "pdf"), std::nullopt) << "a folder is no file";
    const fs::path last = add("three/icons/active.pdf");
    EXPECT_EQ(resources.path("active", "pdf"), last);
    const fs::path first = add("two/icons/active.pdf");
    EXPECT_EQ(resources.path("active", "pdf"), first) << "looks anew, and names it plainly";
    const FolderResources relative({fs::relative(home / "two")});
    EXPECT_EQ(relative.path("active", "pdf"), first);
}

} // namespace noctra
