#include "platform/linux/FolderResources.h"

#include <fstream>

#include <stdlib.h>

#include <gtest/gtest.h>

namespace noctra {

namespace fs = std::filesystem;

namespace {

struct FolderResourcesTest : testing::Test {
    char pattern[32] = "/tmp/noctra-resources-XXXXXX";
    const fs::path home = ::mkdtemp(pattern);

    ~FolderResourcesTest() override { fs::remove_all(home); }

    std::string add(const fs::path& file) const {
        fs::create_directories((home / file).parent_path());
        std::ofstream(home / file) << "x";
        return home / file;
    }
};

} // namespace

TEST_F(FolderResourcesTest, ComeFromTheFirstFolderThatHasTheFileItself) {
    fs::create_directories(home / "one/icons/active.pdf");
    const FolderResources resources(
        {home / "none", home / "one", home / "two/../two", home / "three"});
    EXPECT_EQ(resources.path("active", "pdf"), std::nullopt) << "a folder is no file";
    const std::string last = add("three/icons/active.pdf");
    EXPECT_EQ(resources.path("active", "pdf"), last);
    const std::string first = add("two/icons/active.pdf");
    EXPECT_EQ(resources.path("active", "pdf"), first) << "looks anew, and names it plainly";
    const FolderResources relative({fs::relative(home / "two")});
    EXPECT_EQ(relative.path("active", "pdf"), first);
}

} // namespace noctra
