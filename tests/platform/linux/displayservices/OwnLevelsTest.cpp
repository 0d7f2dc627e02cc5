#include "platform/linux/displayservices/OwnLevels.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"

namespace noctra::display_services {

namespace {

using From = OwnLevels::From;

const LevelOwner here{"edid-1", "DP-1"};
const LevelOwner there{"edid-1", "DP-2"};
const LevelOwner other{"edid-2", "DP-1"};

TEST(OwnLevels, AreOnDiskForTheNextRunUntilTheyHaveBeenPutBack) {
    const test::TemporaryFolder folder;
    const std::string file = folder / "state" / "own-levels";
    const OwnLevels::Map both{{here, {70, 100}}, {other, {0, 65535}}};
    {
        OwnLevels levels(file);
        EXPECT_FALSE(levels.hasLeftOvers());
        levels.save([&] { return both; });
        using std::filesystem::perms;
        EXPECT_EQ(std::filesystem::status(file).permissions(),
                  perms::owner_read | perms::owner_write);
    }
    OwnLevels next(file);
    EXPECT_TRUE(next.hasLeftOvers());
    EXPECT_EQ(next.take(there, From::sameConnector), std::nullopt);
    EXPECT_EQ(next.take(there, From::anyConnector), (OwnLevel{70, 100}))
        << "it may have been moved";
    EXPECT_EQ(next.take(here, From::anyConnector), std::nullopt) << "only once";
    next.save([] { return OwnLevels::Map{{there, {70, 100}}}; });
    OwnLevels third(file);
    EXPECT_EQ(third.take(other, From::sameConnector), (OwnLevel{0, 65535}))
        << "a display that was away is not forgotten";
    third.save([] { return OwnLevels::Map{}; });
    EXPECT_EQ(OwnLevels(file).take(there, From::sameConnector), (OwnLevel{70, 100}));
    EXPECT_TRUE(third.take(there, From::sameConnector));
    third.save([] { return OwnLevels::Map{}; });
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST(OwnLevels, LeaveOutWhatMakesNoSense) {
    const test::TemporaryFolder folder;
    const std::string file = folder / "own-levels";
    test::writeFile(file, "edid-1 DP-1 70\nx\n\nedid-2 DP-1 101 100\nedid-3 DP-1 1 0\n"
                          "edid-4 DP-1 -1 5\nedid-5 DP-1 1 2 3\nedid-1 DP-2 40 80\n\x80\xff");
    OwnLevels levels(file);
    EXPECT_EQ(levels.take(here, From::anyConnector), (OwnLevel{40, 80}));
    EXPECT_FALSE(levels.hasLeftOvers());
    EXPECT_FALSE(OwnLevels("").hasLeftOvers());
}

} // namespace

} // namespace noctra::display_services
