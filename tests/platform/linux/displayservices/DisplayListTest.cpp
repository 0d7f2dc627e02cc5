#include "platform/linux/displayservices/DisplayList.h"

#include <gtest/gtest.h>

namespace noctra::display_services {

namespace {

using namespace std::chrono_literals;

Edid edid(std::uint8_t mark) {
    Edid bytes{};
    bytes.back() = mark;
    return bytes;
}

Output external(DisplayId id, std::uint8_t mark) {
    return {id, false, edid(mark)};
}

struct DisplayListTest : testing::Test {
    DisplayList list;
    TimePoint now{1h};

    void attach(const std::vector<Output>& outputs) {
        list.replace(outputs, now);
        for (DisplayEntry& entry : list.entries())
            entry.asked = true;
    }
    std::optional<std::size_t> monitorOf(DisplayId id) { return list.find(id)->monitor; }
    /// In how many milliseconds; -1: never.
    std::int64_t looksIn() {
        const auto next = list.nextLook(false);
        if (!next)
            return -1;
        return std::max<std::int64_t>(
            std::chrono::duration_cast<std::chrono::milliseconds>(*next - now).count(), 0);
    }
    void read(DisplayId id) { list.find(id)->brightness.readDone(MonitorValue{40, 100}, now); }
};

TEST_F(DisplayListTest, GivesEachDisplayAMonitorOfItsOwn) {
    attach({external(1, 7), {2, true, edid(7)}, external(3, 7), external(4, 8), {5, false, {}}});
    list.assign({edid(9), edid(7), edid(8), edid(7)}, now);
    EXPECT_EQ(monitorOf(1), 1U);
    EXPECT_EQ(monitorOf(2), std::nullopt) << "built in";
    EXPECT_EQ(monitorOf(3), 3U);
    EXPECT_EQ(monitorOf(4), 2U);
    EXPECT_EQ(monitorOf(5), std::nullopt) << "nobody knows which it is";
    EXPECT_EQ(looksIn(), -1);
}

TEST_F(DisplayListTest, LooksAgainForAMonitorThatIsStillWakingUpButNotForEver) {
    attach({external(1, 7)});
    EXPECT_EQ(looksIn(), 100) << "not for somebody who is on his way out";
    list.assign({}, now);
    EXPECT_EQ(looksIn(), 2000);
    now += 2s;
    list.assign({}, now);
    EXPECT_EQ(looksIn(), 8000);
    now += 8s;
    list.assign({}, now);
    EXPECT_EQ(looksIn(), -1);
    attach({external(1, 7)}); // a change of the configuration
    EXPECT_EQ(looksIn(), 2000) << "events come in bursts";
    list.assignNone();
    EXPECT_EQ(looksIn(), -1) << "there is no bus";
}

TEST_F(DisplayListTest, KeepsAMonitorThatAChangeOfModeTakesAwayForAMoment) {
    attach({external(1, 7)});
    list.assign({edid(7)}, now);
    read(1);
    attach({});
    EXPECT_TRUE(list.find(1)->goneSince);
    now += 1s;
    attach({external(1, 7)});
    EXPECT_FALSE(list.find(1)->goneSince);
    EXPECT_TRUE(list.find(1)->brightness.canChange());
    EXPECT_EQ(looksIn(), -1);

    attach({});
    now += 1min;
    attach({external(1, 7)});
    EXPECT_EQ(looksIn(), 100) << "it may be on another bus";
}

TEST_F(DisplayListTest, ForgetsAMonitorInWhosePlaceAnotherIs) {
    attach({external(1, 7)});
    list.assign({edid(7)}, now);
    read(1);
    attach({external(1, 8)});
    EXPECT_EQ(monitorOf(1), std::nullopt);
    EXPECT_FALSE(list.find(1)->brightness.canChange());
}

TEST_F(DisplayListTest, LooksForAMonitorThatHasFailedWhenTheConfigurationChanges) {
    attach({external(1, 7), external(2, 8)});
    list.assign({edid(7), edid(8)}, now);
    read(1);
    for (int i = 0; i < 3; ++i)
        list.find(2)->brightness.readDone(std::nullopt, now);
    attach({external(1, 7), external(2, 8)});
    EXPECT_NE(looksIn(), -1);
    now += 2s;
    list.assign({edid(8), edid(7)}, now);
    EXPECT_EQ(monitorOf(1), 1U);
    EXPECT_TRUE(list.find(1)->brightness.canChange()) << "its reading is still worth something";
    EXPECT_EQ(monitorOf(2), 0U);
}

TEST_F(DisplayListTest, LooksOnlyForDisplaysThatSomebodyAsksAboutAndAtTheEndOnlyToSetThem) {
    list.replace({external(1, 7)}, now);
    EXPECT_EQ(looksIn(), -1);
    list.find(1)->asked = true;
    EXPECT_EQ(looksIn(), 100);
    EXPECT_EQ(list.nextLook(true), std::nullopt);
    list.find(1)->brightness.request(1, now);
    EXPECT_NE(list.nextLook(true), std::nullopt);
}

} // namespace

} // namespace noctra::display_services
