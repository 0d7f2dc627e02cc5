#include "platform/linux/displayservices/DisplayRegistry.h"

#include <thread>

#include <gtest/gtest.h>
#include <poll.h>

#include "platform/linux/displayservices/HostFunctions.h"

namespace noctra::display_services {

namespace {

using namespace std::chrono_literals;
using Kind = Job::Kind;

constexpr DisplayId panel = 1;
constexpr DisplayId monitor = 2;

struct DisplayRegistryTest : testing::Test {
    News news;
    EventDescriptor wake;
    DisplayRegistry registry{news, wake};
    TimePoint now{1h};

    /// A panel and a monitor that has been read at 40 of 100.
    void SetUp() override {
        const Edid edid{1};
        registry.replaceDisplays({{panel, true, {}}, {monitor, false, edid}},
                                 BacklightDevice{"none", "/nowhere", 1000}, now);
        EXPECT_FALSE(registry.canChange(monitor, now));
        registry.monitorsFound({{edid}}, now);
        registry.monitorRead(monitor, MonitorValue{40, 100}, now);
        now += 100ms;
        news.take();
    }
    [[nodiscard]] bool isReadable(int descriptor) const {
        pollfd polled{descriptor, POLLIN, 0};
        return ::poll(&polled, 1, 0) > 0;
    }
};

TEST_F(DisplayRegistryTest, DoesWhatIsUrgentFirst) {
    registry.enableAmbientLight(panel, false, now - 1s);
    registry.request(monitor, 1, true, now);
    registry.request(panel, 1, true, now);
    std::vector<Kind> order;
    while (const auto job = registry.nextJob(now)) {
        if (job->due > now) {
            now = job->due;
            continue;
        }
        order.push_back(job->kind);
        switch (job->kind) {
        case Kind::panel:
            EXPECT_EQ(registry.panelStep(1000, now), std::nullopt);
            break;
        case Kind::ambientLight:
            registry.ambientLightDone(job->off);
            break;
        case Kind::write:
            registry.monitorWritten(job->display, job->raw, true, now);
            break;
        default:
            registry.monitorRead(job->display, MonitorValue{100, 100}, now);
        }
    }
    EXPECT_EQ(order,
              (std::vector<Kind>{Kind::panel, Kind::write, Kind::ambientLight, Kind::verify}));
}

TEST_F(DisplayRegistryTest, DoesNothingForAmbientLightThatIsSwitchedThereAndBack) {
    registry.enableAmbientLight(panel, false, now);
    registry.enableAmbientLight(panel, true, now);
    registry.enableAmbientLight(monitor, false, now);
    const auto job = registry.nextJob(now);
    ASSERT_TRUE(job);
    EXPECT_FALSE(job->off) << "of the two the last counts";
    EXPECT_EQ(job->due, now);
    registry.enableAmbientLight(panel, false, now);
    registry.ambientLightDone(false);
    EXPECT_TRUE(registry.nextJob(now)->off) << "asked for while the other was being done";
}

TEST_F(DisplayRegistryTest, AnswersWithWhatIsOnItsWayToWhoeverWantsToPutItBack) {
    for (const DisplayId display : {panel, monitor}) {
        registry.request(display, 1, true, now);
        EXPECT_EQ(registry.brightness(display, now), 1.0F);
        registry.request(display, 0.4F, false, now);
        EXPECT_EQ(registry.brightness(display, now), 0.4F);
    }
}

TEST_F(DisplayRegistryTest, TellsTheHostOnceWhenADisplayCanBeChangedNoMore) {
    EXPECT_FALSE(isReadable(news.descriptor()));
    EXPECT_TRUE(registry.canChange(monitor, now));
    registry.request(monitor, 1, false, now);
    for (int i = 0; i < 3; ++i) {
        EXPECT_FALSE(isReadable(news.descriptor()));
        registry.monitorWritten(monitor, 100, false, now);
    }
    EXPECT_TRUE(isReadable(news.descriptor()));
    EXPECT_EQ(news.take(), controllabilityChanged);
    EXPECT_FALSE(isReadable(news.descriptor()));
    EXPECT_FALSE(registry.canChange(monitor, now));
    registry.monitorRead(monitor, std::nullopt, now);
    EXPECT_EQ(news.take(), 0U);
}

TEST_F(DisplayRegistryTest, IsSettledWhenAllHasBeenWrittenForWhoeverWaits) {
    registry.request(monitor, 1, false, now);
    registry.request(panel, 1, false, now);
    registry.beginFinishing();
    EXPECT_FALSE(registry.awaitSettled(std::chrono::steady_clock::now()));
    std::thread worker([&] {
        registry.monitorWritten(monitor, 100, true, now);
        registry.panelWritten(1000, true, now);
    });
    EXPECT_TRUE(registry.awaitSettled(std::chrono::steady_clock::now() + 1min));
    worker.join();
    EXPECT_EQ(registry.nextJob(now), std::nullopt) << "not even a look whether it has worked";
    registry.request(monitor, 1, false, now);
    EXPECT_TRUE(registry.awaitSettled(std::chrono::steady_clock::now() + 1min))
        << "it is there already";
}

} // namespace

} // namespace noctra::display_services
