#include "platform/linux/FolderResources.h"

#include <fstream>
#include <functional>
#include <memory>

#include <stdlib.h>

#include <gtest/gtest.h>

#include "platform/simulated/SimulatedResources.h"

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

/// What every adapter does that has active.pdf at `icon` and Face.ttf at `font`, and no other.
void expectContract(const Resources& resources, const std::string& icon, const std::string& font) {
    EXPECT_EQ(resources.path("active", "pdf"), icon);
    EXPECT_EQ(resources.path("Face", "ttf"), font);
    EXPECT_EQ(resources.path("active", "ttf"), std::nullopt);
    EXPECT_EQ(resources.path("off", "pdf"), std::nullopt);
    EXPECT_EQ(resources.path("", ""), std::nullopt);
}

} // namespace

TEST_F(FolderResourcesTest, AreFoundWhereTheSimulatedOnesAre) {
    const std::string icon = add("icons/active.pdf");
    const std::string font = add("fonts/Face.ttf");
    expectContract(FolderResources({home}), icon, font);
    SimulatedResources simulated;
    simulated.paths = {{"active.pdf", icon}, {"Face.ttf", font}};
    expectContract(simulated, icon, font);
}

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
