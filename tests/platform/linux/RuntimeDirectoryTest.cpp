#include "platform/linux/RuntimeDirectory.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>

#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"

namespace noctra {

namespace fs = std::filesystem;

TEST(RuntimeDirectory, IsPrivateAndNeverWhereSomebodyElsePointsTo) {
    struct Case {
        const char* what;
        std::function<void(const fs::path& place)> prepare;
        bool isUsed;
    };
    const Case cases[]{
        {"nothing there", [](const fs::path&) {}, true},
        {"open to all",
         [](const fs::path& place) {
             fs::create_directory(place);
             fs::permissions(place, fs::perms::all);
         },
         true},
        {"a link to a folder",
         [](const fs::path& place) {
             fs::create_directory(place.parent_path() / "elsewhere");
             fs::create_directory_symlink("elsewhere", place);
         },
         false},
        {"a file", [](const fs::path& place) { std::ofstream(place) << "here"; }, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const test::TemporaryFolder runtime;
        const test::TemporaryFolder cache;
        ::setenv("XDG_RUNTIME_DIR", runtime.path().c_str(), 1);
        ::setenv("XDG_CACHE_HOME", cache.path().c_str(), 1);
        c.prepare(runtime / "noctra");
        const RuntimeDirectory directory = openRuntimeDirectory();
        EXPECT_EQ(directory.path, (c.isUsed ? runtime : cache) / "noctra");
        EXPECT_EQ(directory.problem.empty(), c.isUsed) << directory.problem;
        EXPECT_EQ(fs::status(directory.path).permissions(), fs::perms::owner_all);
    }
}

TEST(RuntimeDirectory, NamesOneRecordPerXServerWhateverTheScreen) {
    EXPECT_EQ(tableRecordName(":0"), "tables-:0");
    EXPECT_EQ(tableRecordName(":0.1"), "tables-:0");
    EXPECT_EQ(tableRecordName("host.example:10.0"), "tables-host.example:10");
    EXPECT_EQ(tableRecordName("/tmp/x/y:0"), "tables-_tmp_x_y:0");
}

} // namespace noctra
