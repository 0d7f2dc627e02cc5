// The RandR adapter itself on a real X server: the contract of every Displays adapter, and its
// promise that no table of the program stays behind on a CRTC.

#include "platform/linux/RandrDisplays.h"

#include <memory>
#include <string>
#include <utility>

#include "platform/simulated/SimulatedDesktop.h"
#include "tests/desktop/support/ExpectedTables.h"
#include "tests/desktop/support/GammaProbe.h"
#include "tests/desktop/support/OutputPlugs.h"
#include "tests/desktop/support/Tables.h"
#include "tests/desktop/support/TemporaryFolder.h"
#include "tests/desktop/support/XServer.h"
#include "tests/platform/DisplaysContract.h"

namespace noctra::desktop {

namespace {

XServer& server() {
    static XServer theServer(3);
    return theServer;
}

/// The adapter on three displays, with a record of its own in a folder of its own.
class ThreeRandrDisplays : public DisplaysUnderTest {
public:
    ThreeRandrDisplays() {
        plugs.plugOnly(3);
        restart();
    }
    ~ThreeRandrDisplays() override { probe.write(before); }

    Displays& displays() override { return *adapter; }
    GammaTables carried(DisplayId display) override {
        // One that has written nothing reads what is there.
        RandrDisplays observer(connectToRandr(server().display().c_str()),
                               TableRecord::open(std::string()).record, log);
        std::vector<DisplayId> ids;
        observer.attachedScreens(ids);
        GammaTables tables;
        std::uint32_t count = 0;
        EXPECT_EQ(observer.readTables(display, tables, count), 0);
        return tables;
    }
    void unplugLast() override {
        plugs.unplug(2);
        takeNote();
    }

    /// Another run of the program; the one before is gone without a word.
    void restart() {
        adapter.reset();
        auto opened = TableRecord::open((folder / "tables").string());
        adapter = std::make_unique<RandrDisplays>(connectToRandr(server().display().c_str()),
                                                  std::move(opened.record), log);
    }

    /// The plugs have had their answer from the server, so its events have been sent.
    void takeNote() { ASSERT_TRUE(adapter->processEvents().configurationChanged); }

    TemporaryFolder folder;
    GammaProbe probe{server().display()};
    OutputPlugs plugs{server().display()};
    TablesByCrtc before = probe.readAll();
    RecordedLog log;
    std::unique_ptr<RandrDisplays> adapter;
};

} // namespace

} // namespace noctra::desktop

namespace noctra {

INSTANTIATE_TEST_SUITE_P(Randr, DisplaysContract,
                         testing::Values(MakeDisplays{
                             "RandrDisplays", [] {
                                 return std::make_unique<desktop::ThreeRandrDisplays>();
                             }}));

} // namespace noctra

namespace noctra::desktop {

namespace {

struct RandrDisplaysTest : testing::Test {
    ThreeRandrDisplays desk;

    RandrDisplays& adapter() { return *desk.adapter; }
    std::vector<DisplayId> attached() {
        std::vector<DisplayId> ids;
        adapter().attachedScreens(ids);
        return ids;
    }
    void writeHalf(DisplayId display) {
        GammaTables tables;
        std::uint32_t count = 0;
        ASSERT_EQ(adapter().readTables(display, tables, count), 0);
        for (GammaChannel* channel : {&tables.red, &tables.green, &tables.blue})
            for (float& level : *channel)
                level *= 0.5F;
        adapter().writeTables(display, tables);
        adapter().settle([](DisplayId id, Displays::Status) { FAIL() << id; });
    }
    void dimAll() {
        for (const DisplayId display : attached())
            writeHalf(display);
        ASSERT_NE(desk.probe.readAll(), desk.before);
    }
};

} // namespace

TEST_F(RandrDisplaysTest, TakesOffWhatARunThatWasKilledLeftAlsoFromADarkCrtc) {
    dimAll();
    desk.plugs.unplug(2);
    desk.restart();
    EXPECT_NE(desk.probe.readAll(), desk.before) << "nothing is written before it is asked for";
    adapter().restoreCalibratedTables();
    EXPECT_EQ(desk.probe.readAll(), desk.before);
}

TEST_F(RandrDisplaysTest, LeavesTablesAloneThatSomebodyElsePutThereAfterwards) {
    dimAll();
    TablesByCrtc foreign = desk.probe.readAll();
    for (auto& [crtc, tables] : foreign)
        tables.red[100] = 12345;
    desk.probe.write(foreign);
    desk.restart();
    adapter().restoreCalibratedTables();
    EXPECT_EQ(desk.probe.readAll(), foreign);
    desk.probe.write(desk.before);
}

TEST_F(RandrDisplaysTest, TakesItsTablesOffAnUnpluggedDisplayAsSoonAsItHearsOfIt) {
    dimAll();
    const TablesByCrtc dimmed = desk.probe.readAll();
    desk.plugs.unplug(1);
    desk.takeNote();
    EXPECT_NE(desk.probe.readAll(), dimmed);
    desk.plugs.plug(1);
    desk.takeNote();
    adapter().restoreCalibratedTables();
    EXPECT_EQ(desk.probe.readAll(), desk.before);
}

TEST_F(RandrDisplaysTest, PutsItsTablesBackWhereADriverHasLoadedItsOwn) {
    TablesByCrtc linear = desk.probe.readAll();
    for (auto& [crtc, tables] : linear)
        for (auto* channel : {&tables.red, &tables.green, &tables.blue})
            for (std::size_t i = 0; i < channel->size(); ++i)
                (*channel)[i] = static_cast<std::uint16_t>(i * 0x101);
    TablesByCrtc warm = linear;
    for (auto& [crtc, tables] : warm)
        for (std::uint16_t& level : tables.blue)
            level /= 2;
    desk.probe.write(calibratedLike(linear));
    const TablesByCrtc calibrated = desk.probe.readAll();
    adapter().restoreCalibratedTables();
    dimAll();
    const TablesByCrtc dimmed = desk.probe.readLit();
    const auto afterLoading = [&](const TablesByCrtc& others) {
        for (const auto& [crtc, tables] : dimmed)
            desk.probe.write(crtc, others.at(crtc));
        adapter().reassertTables();
        return desk.probe.readLit();
    };
    EXPECT_EQ(afterLoading(linear), dimmed);
    EXPECT_EQ(afterLoading(warm), dimmed);

    adapter().restoreCalibratedTables();
    for (const auto& [crtc, tables] : afterLoading(linear))
        EXPECT_EQ(tables, calibrated.at(crtc)) << "also while the filter is off";
    for (const auto& [crtc, tables] : afterLoading(warm))
        EXPECT_EQ(tables, warm.at(crtc)) << "but then not over another program's";
}

TEST_F(RandrDisplaysTest, LetsNobodyBringAFilterBackThatIsBeingTakenOff) {
    const DisplayId display = attached().front();
    GammaTables own;
    std::uint32_t count = 0;
    ASSERT_EQ(adapter().readTables(display, own, count), 0);
    writeHalf(display);
    adapter().writeTables(display, own);
    adapter().reassertTables(); // from another thread, before the first one has waited
    adapter().settle([](DisplayId id, Displays::Status) { FAIL() << id; });
    EXPECT_EQ(desk.probe.readAll(), desk.before);
}

TEST_F(RandrDisplaysTest, TellsOfAChangeThatTheDescriptorDoesNotAnnounceAnyMore) {
    const DisplayId display = attached().front();
    GammaTables tables;
    std::uint32_t count = 0;
    int news = 0;
    adapter().onNews([&] { ++news; });
    const std::function<void()> waits[]{[&] { adapter().reassertTables(); },
                                        [&] { adapter().readTables(display, tables, count); },
                                        [&] {
                                            writeHalf(display);
                                        }};
    for (const auto& waitForAReply : waits) {
        static_cast<void>(adapter().processEvents());
        news = 0;
        desk.plugs.announceChange(); // comes in before the reply
        waitForAReply();
        EXPECT_EQ(news, 1);
    }
    adapter().onNews({});
}

TEST_F(RandrDisplaysTest, SaysThatTheServerIsGoneAndFailsEverythingFromThenOn) {
    XServer mortal(2);
    RandrDisplays orphan(connectToRandr(mortal.display().c_str()),
                         TableRecord::open(std::string()).record, desk.log);
    std::vector<DisplayId> ids;
    orphan.attachedScreens(ids);
    ASSERT_EQ(ids.size(), 2U);
    mortal.killAtOnce();
    GammaTables tables;
    std::uint32_t count = 0;
    while (orphan.processEvents().serverGone.empty()) { // until the kernel has told the socket
        orphan.writeTables(ids[0], tables);
        orphan.settle([](DisplayId, Displays::Status) {});
    }
    EXPECT_NE(orphan.readTables(ids[0], tables, count), 0);
    orphan.writeTables(ids[0], tables);
    orphan.writeTables(ids[1], tables);
    std::size_t failures = 0;
    orphan.settle([&](DisplayId, Displays::Status status) { failures += status != 0 ? 1 : 0; });
    EXPECT_EQ(failures, 2U);
    orphan.restoreCalibratedTables();
    orphan.attachedScreens(ids);
}

} // namespace noctra::desktop
