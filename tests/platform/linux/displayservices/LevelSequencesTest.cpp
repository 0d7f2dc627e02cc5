// Random sequences of what a person, a program and hardware do, on virtual time: whatever comes in
// between, every display ends with the level that it is to have.

#include <filesystem>
#include <random>
#include <thread>

#include <gtest/gtest.h>

#include "platform/linux/displayservices/DisplayRegistry.h"
#include "platform/linux/displayservices/HostFunctions.h"
#include "tests/platform/linux/backlight/BacklightFolder.h"
#include "tests/support/TemporaryFolder.h"

namespace noctra::display_services {

namespace {

using namespace std::chrono_literals;

struct Monitor {
    std::uint16_t value = 70;
    std::uint16_t own = 70;
    bool appliesAtOnce = false; ///< a value is there when a write begins, else when it ends
    bool attached = true;
    bool answers = true;
    int connector = 1;
};

/// Two monitors and a panel, with a worker whose commands take their time.
class World {
public:
    explicit World(unsigned int seed)
        : random_(seed), onDisk_(seed % 20 == 0), levels_(onDisk_ ? folder_.path() + "/own" : ""),
          registry_(news_, wake_, levels_, {true, folder_.path()}) {
        folder_.add("panel", {.maximum = "1000\n", .value = "400\n"});
        monitors_[1].value = monitors_[1].own = 35;
        monitors_[1].connector = 2;
        monitors_[0].appliesAtOnce = below(2) == 0;
        monitors_[1].appliesAtOnce = below(2) == 0;
        registry_.lookForBacklight();
        attach();
        for (DisplayId id = 1; id <= 3; ++id)
            static_cast<void>(registry_.canChange(id, now_));
        run(5s);
    }

    unsigned int below(unsigned int limit) { return random_() % limit; }

    /// One thing that happens to the program or the hardware.
    void happen() {
        Monitor& monitor = monitors_[below(2)];
        switch (below(9)) {
        case 0:
        case 1:
        case 2:
            isOn_ ? switchOff() : switchOn();
            break;
        case 3:
            monitor.answers = !monitor.answers;
            break;
        case 4:
            monitor.attached = !monitor.attached;
            monitor.connector += below(2) == 0 ? 2 : 0;
            attach();
            break;
        case 5:
            panelTakesWrites_ = !panelTakesWrites_;
            break;
        case 6:
            if (isOn_ && monitor.value == 100)
                monitor.value = static_cast<std::uint16_t>(below(100)); // by its own buttons
            break;
        case 7:
            renamePanel();
            break;
        default:
            ask();
        }
    }

    /// Lets the worker work; now and then something happens in the middle of a command.
    void run(std::chrono::milliseconds time, bool eventful = false) {
        eventful_ = eventful;
        for (const TimePoint end = now_ + time; now_ < end;) {
            const auto job = registry_.nextJob(now_);
            if (job && job->due <= now_)
                perform(*job);
            else
                now_ = std::min(end, job ? job->due : end);
        }
    }

    /// All trouble is over, and the mode is as asked: on or off.
    void calm(bool on) {
        for (Monitor& monitor : monitors_)
            monitor.attached = monitor.answers = true;
        panelTakesWrites_ = true;
        attach();
        run(100ms);
        if (on != isOn_)
            on ? switchOn() : switchOff();
        for (int i = 0; i < 30; ++i) { // a drift check
            ask();
            run(5s);
        }
    }

    void finish() {
        restore();
        registry_.beginFinishing(now_);
        run(3s);
    }

    void expectLevels(bool full) {
        for (const Monitor& monitor : monitors_)
            EXPECT_EQ(monitor.value, full ? 100 : monitor.own);
        EXPECT_EQ(panelSetting(), full ? 1000U : 400U);
        EXPECT_EQ(registry_.levelsToKeep().size(), full ? 3U : 0U);
        EXPECT_EQ(std::filesystem::exists(folder_.path() + "/own"), full && onDisk_);
    }

private:
    static AttachedDisplay attachedDisplay(std::size_t i, const Monitor& monitor) {
        return {.id = static_cast<DisplayId>(2 + i),
                .builtIn = false,
                .edid = edidOf(i),
                .connector = "DP-" + std::to_string(monitor.connector)};
    }
    static Edid edidOf(std::size_t i) {
        Edid edid{};
        edid.fill(static_cast<std::uint8_t>(i + 1));
        return edid;
    }

    void attach() {
        std::vector<AttachedDisplay> attached{{.id = 1, .builtIn = true, .connector = "eDP-1"}};
        for (std::size_t i = 0; i < monitors_.size(); ++i)
            if (monitors_[i].attached)
                attached.push_back(attachedDisplay(i, monitors_[i]));
        registry_.replaceDisplays(attached, now_);
    }
    void renamePanel() {
        const std::string from = folder_.path() + "/panel" + (renamed_ ? "2" : "");
        renamed_ = !renamed_;
        std::filesystem::rename(from, folder_.path() + "/panel" + (renamed_ ? "2" : ""));
    }
    unsigned int panelSetting() {
        return readBacklight(listBacklightDevices(folder_.path()).front()).setting.value_or(0);
    }

    // As the controller of the mode does it.
    void lock(DisplayId id) {
        if (!registry_.canChange(id, now_))
            return;
        if (!records_.contains(id))
            if (const auto level = registry_.brightness(id, now_))
                records_[id] = *level;
        registry_.request(id, 1, true, now_);
    }
    void switchOn() {
        isOn_ = true;
        records_.clear();
        for (DisplayId id = 1; id <= 3; ++id)
            lock(id);
    }
    void switchOff() {
        isOn_ = false;
        restore();
    }
    void restore() {
        for (const auto& [id, level] : records_)
            registry_.request(id, level, false, now_);
        records_.clear();
    }
    void ask() {
        for (DisplayId id = 1; id <= 3; ++id) {
            const auto level = registry_.brightness(id, now_);
            if (isOn_ && (!level || *level < 0.99F))
                lock(id);
        }
    }

    void perform(const Job& job) {
        levels_.save([this] { return registry_.levelsToKeep(); });
        switch (job.kind) {
        case Job::Kind::backlight:
            registry_.lookForBacklight();
            break;
        case Job::Kind::panel:
            movePanel();
            break;
        case Job::Kind::look:
            look();
            break;
        case Job::Kind::write:
            write(job);
            break;
        case Job::Kind::ambientLight:
            break;
        default:
            passTime();
            const Monitor& monitor = found_.at(job.monitor);
            registry_.monitorRead(job.display,
                                  answers(monitor) ? std::optional(MonitorValue{monitor.value, 100})
                                                   : std::nullopt,
                                  now_);
        }
        levels_.save([this] { return registry_.levelsToKeep(); });
    }
    void passTime() {
        now_ += std::chrono::milliseconds(30 + below(100));
        if (eventful_ && below(3) == 0)
            happen();
        now_ += std::chrono::milliseconds(30 + below(100));
    }
    static bool answers(const Monitor& monitor) { return monitor.attached && monitor.answers; }
    void movePanel() {
        const auto device = registry_.backlight();
        const auto value = registry_.panelStep(readBacklight(*device), now_);
        if (!value)
            return;
        EXPECT_TRUE(*value == 400 || !registry_.levelsToKeep().empty());
        levels_.save([this] { return registry_.levelsToKeep(); });
        const bool takes = panelTakesWrites_ && std::filesystem::exists(device->folder);
        if (takes)
            folder_.set(renamed_ ? "panel2" : "panel", std::to_string(*value) + "\n");
        registry_.panelWritten(*value, takes, now_);
    }
    void look() {
        passTime();
        std::vector<Edid> edids;
        found_.clear();
        for (std::size_t i = 0; i < monitors_.size(); ++i)
            if (answers(monitors_[i])) {
                found_.emplace_back(monitors_[i]);
                edids.push_back(edidOf(i));
            }
        registry_.monitorsFound(edids, now_);
    }
    void write(const Job& job) {
        Monitor& monitor = found_.at(job.monitor);
        if (!registry_.monitorWriteBegins(job.display, job.raw))
            return;
        levels_.save([this] { return registry_.levelsToKeep(); });
        const bool answered = answers(monitor);
        if (answered && monitor.appliesAtOnce)
            monitor.value = job.raw;
        passTime();
        if (answered)
            monitor.value = job.raw;
        registry_.monitorWritten(job.display, job.raw, answered, now_);
    }

    std::mt19937 random_;
    const bool onDisk_; ///< not always, since that takes its time
    test::BacklightFolder folder_;
    News news_;
    EventDescriptor wake_;
    OwnLevels levels_;
    DisplayRegistry registry_;
    TimePoint now_{1h};
    std::array<Monitor, 2> monitors_;
    std::vector<std::reference_wrapper<Monitor>> found_;
    bool panelTakesWrites_ = true;
    bool renamed_ = false;
    bool isOn_ = false;
    bool eventful_ = false;
    std::map<DisplayId, float> records_;
};

TEST(LevelSequences, BeginWithWhatAnEarlierRunHasLeftOfOneOfTwoTwins) {
    const test::TemporaryFolder folder;
    const OwnLevels::Map left{{{"edid-a7b537c5", "DP-2"}, {70, 100}}};
    OwnLevels(folder / "own").save([&] { return left; });
    OwnLevels levels(folder / "own");
    News news;
    EventDescriptor wake;
    DisplayRegistry registry(news, wake, levels, {true, folder / "none"});
    const std::vector<AttachedDisplay> twins{{.id = 1, .edid = Edid{}, .connector = "DP-1"},
                                             {.id = 2, .edid = Edid{}, .connector = "DP-2"}};
    registry.replaceDisplays(twins, TimePoint(1h));
    EXPECT_EQ(registry.levelsToKeep(), left);
}

/// Saving asks the registry, and the registry asks for what earlier runs have left.
TEST(LevelSequences, NeverMakeTheCallerAndTheWorkerWaitForEachOther) {
    OwnLevels levels("");
    News news;
    EventDescriptor wake;
    DisplayRegistry registry(news, wake, levels, {true, "/none"});
    const std::vector<AttachedDisplay> one{{.id = 1, .edid = Edid{}, .connector = "DP-1"}};
    std::thread worker([&] {
        for (int i = 0; i < 20000; ++i)
            levels.save([&] { return registry.levelsToKeep(); });
    });
    for (int i = 0; i < 20000; ++i)
        registry.replaceDisplays(one, TimePoint(1h));
    worker.join();
}

TEST(LevelSequences, TellTheHostOnceWhenItsLastAnswerIsAnotherOneNow) {
    OwnLevels levels("");
    News news;
    EventDescriptor wake;
    DisplayRegistry registry(news, wake, levels, {true, "/none"});
    const TimePoint now(1h);
    EXPECT_FALSE(registry.canChange(1, now)) << "not known yet";
    const std::vector<AttachedDisplay> two{{.id = 1, .edid = Edid{}, .connector = "DP-1"},
                                           {.id = 2, .edid = Edid{1}, .connector = "DP-2"}};
    registry.replaceDisplays(two, now);
    registry.monitorsFound({{Edid{}, Edid{1}}}, now);
    registry.monitorRead(2, MonitorValue{40, 100}, now);
    EXPECT_EQ(news.take(), 0U) << "nobody has asked for that one";
    registry.monitorRead(1, MonitorValue{40, 100}, now);
    EXPECT_EQ(news.take(), controllabilityChanged);
    registry.monitorRead(1, MonitorValue{50, 100}, now);
    EXPECT_EQ(news.take(), 0U);
}

TEST(LevelSequences, EndWithEveryDisplayAtTheLevelThatIsAskedFor) {
    for (unsigned int seed = 0; seed < 100 && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        World world(seed);
        for (unsigned int left = 1 + world.below(25); left > 0; --left) {
            world.happen();
            world.run(std::chrono::milliseconds(world.below(2000)), true);
        }
        const bool on = world.below(2) == 0;
        world.calm(on);
        world.expectLevels(on);
        if (world.below(2) == 0)
            world.calm(!on);
        world.finish();
        world.expectLevels(false);
    }
}

} // namespace

} // namespace noctra::display_services
