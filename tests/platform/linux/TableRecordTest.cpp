#include "platform/linux/TableRecord.h"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"

namespace noctra {

namespace {

using Opened = TableRecord::Opened;

NativeTables flat(std::size_t size, int level) {
    const std::vector<std::uint16_t> channel(size, static_cast<std::uint16_t>(level));
    return {channel, channel, channel};
}

struct TableRecordTest : testing::Test {
    const test::TemporaryFolder folder;
    std::string path = folder / "tables";
};

} // namespace

TEST_F(TableRecordTest, RecognisesTheLastSettledWriteAndTheOneUnderWayInTheNextRun) {
    {
        const auto [record, opened, error] = TableRecord::open(path);
        EXPECT_EQ(opened, Opened::fresh) << error;
        ASSERT_TRUE(record->setBase(63, flat(256, 1000)));
        record->willWrite(63, flat(256, 600));
        record->settled(63, true);
        record->willWrite(63, flat(256, 500)); // the run is killed here
    }
    const auto [record, opened, error] = TableRecord::open(path);
    EXPECT_EQ(opened, Opened::existing);
    EXPECT_EQ(record->baseIfOurs(63, flat(256, 600)), flat(256, 1000));
    EXPECT_EQ(record->baseIfOurs(63, flat(256, 500)), flat(256, 1000));
    EXPECT_EQ(record->baseIfOurs(63, flat(256, 601)), std::nullopt) << "somebody else's table";
    EXPECT_EQ(record->baseIfOurs(63, flat(1024, 600)), std::nullopt);
    EXPECT_EQ(record->baseIfOurs(64, flat(256, 600)), std::nullopt);

    record->settled(63, true);
    EXPECT_EQ(record->baseIfOurs(63, flat(256, 600)), std::nullopt) << "overwritten for good";
    EXPECT_EQ(record->crtcs(), std::vector<std::uint32_t>{63});
}

TEST_F(TableRecordTest, KeepsTheWriteBeforeWhenTheServerRefusesOne) {
    const auto record = TableRecord::open(path).record;
    record->setBase(1, flat(16, 9));
    for (const int level : {5, 4}) {
        record->willWrite(1, flat(16, level));
        record->settled(1, true);
    }
    record->willWrite(1, flat(16, 3));
    record->settled(1, false);
    EXPECT_TRUE(record->baseIfOurs(1, flat(16, 4)));
    EXPECT_FALSE(record->baseIfOurs(1, flat(16, 3)));
    record->willWrite(1, flat(16, 2));
    EXPECT_TRUE(record->baseIfOurs(1, flat(16, 4))) << "still on the CRTC until the server answers";
}

TEST_F(TableRecordTest, ForgetsEarlierWritesWithANewBase) {
    const auto record = TableRecord::open(path).record;
    record->setBase(1, flat(16, 9));
    record->willWrite(1, flat(16, 5));
    record->settled(1, true);
    record->setBase(1, flat(16, 8));
    EXPECT_FALSE(record->baseIfOurs(1, flat(16, 5)));
    EXPECT_FALSE(record->setBase(0, flat(16, 8)));
    for (std::uint32_t crtc = 1; crtc <= 64; ++crtc)
        EXPECT_TRUE(record->setBase(crtc, flat(16, 8)));
    EXPECT_FALSE(record->setBase(65, flat(16, 8))) << "more CRTCs than it can hold";
}

TEST_F(TableRecordTest, LetsOnlyOneProcessWriteAtATime) {
    const auto first = TableRecord::open(path).record;
    auto second = TableRecord::open(path);
    EXPECT_EQ(second.opened, Opened::inUse);
    EXPECT_NE(second.error, "");
    second.record->setBase(5, flat(16, 1)); // in memory only
    EXPECT_TRUE(first->crtcs().empty());
}

TEST_F(TableRecordTest, KnowsWhatItHasNoRoomForAsLongAsItLives) {
    const auto size = TableRecord::maxEntries + 1;
    {
        const auto record = TableRecord::open(path).record;
        ASSERT_TRUE(record->setBase(1, flat(16, 9)));
        EXPECT_FALSE(record->setBase(1, flat(size, 9)));
        record->willWrite(1, flat(size, 8));
        record->settled(1, true);
        record->willWrite(1, flat(size, 7));
        for (const int level : {8, 7})
            EXPECT_EQ(record->baseIfOurs(1, flat(size, level)), flat(size, 9)) << level;
        record->settled(1, false);
        EXPECT_EQ(record->baseIfOurs(1, flat(size, 7)), std::nullopt) << "refused";
        EXPECT_EQ(record->expectedOn(1)->tables, flat(size, 8));
    }
    const auto [record, opened, error] = TableRecord::open(path);
    EXPECT_TRUE(record->crtcs().empty()) << "nor what it had before";
}

TEST_F(TableRecordTest, IsThereForTheNextRunAlsoWhenSomebodyHasRemovedItWithItsFolder) {
    path = folder / "noctra/tables";
    std::filesystem::create_directory(folder / "noctra");
    {
        const auto record = TableRecord::open(path).record;
        ASSERT_TRUE(record->setBase(1, flat(256, 9)));
        ASSERT_TRUE(record->setBase(2, flat(256, 7)));
        record->willWrite(1, flat(256, 8));
        record->settled(1, true);
        std::filesystem::remove_all(folder / "noctra");
        EXPECT_FALSE(record->repair());
        record->willWrite(2, flat(256, 6));
        EXPECT_EQ(TableRecord::open(path).opened, Opened::inUse);
    }
    const auto [record, opened, error] = TableRecord::open(path);
    EXPECT_EQ(opened, Opened::existing);
    EXPECT_EQ(record->baseIfOurs(1, flat(256, 8)), flat(256, 9));
    EXPECT_EQ(record->baseIfOurs(2, flat(256, 6)), flat(256, 7));
}

TEST_F(TableRecordTest, NeverGivesBackABaseOfWhichAByteHasChanged) {
    { static_cast<void>(TableRecord::open(path).record->setBase(1, flat(256, 0x0909))); }
    std::string bytes = test::readFile(path);
    const auto at = bytes.find(std::string(600, '\x09'));
    ASSERT_NE(at, std::string::npos);
    bytes[at + 301] = 8;
    test::writeFile(path, bytes);
    const auto record = TableRecord::open(path).record;
    EXPECT_FALSE(record->expectedOn(1));
    EXPECT_FALSE(record->baseIfOurs(1, flat(256, 0x0909)));
}

} // namespace noctra
