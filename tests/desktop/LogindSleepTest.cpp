// Noticing that the machine woke up, on a system bus of the test's own with a logind that is
// played.

#include "platform/linux/LogindSleep.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

#include <QtCore/QCoreApplication>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/LinuxSystem.h"
#include "platform/qt/QtRunLoop.h"
#include "tests/desktop/support/BusClient.h"
#include "tests/desktop/support/MockLogind.h"
#include "tests/desktop/support/SessionBus.h"
#include "tests/desktop/support/SystemBus.h"

namespace noctra::desktop {

namespace {

using Clock = std::chrono::steady_clock;
using ::testing::ElementsAre;

constexpr Duration answerTime{1000};
/// What may pass on the main thread on a machine that builds at the same time; an answer that is
/// waited for takes far longer.
constexpr Duration unnoticed{50};

std::string socketOf(const SystemBus& bus) {
    return bus.address().substr(std::string("unix:path=").size());
}

class LinesLog : public Log {
public:
    void log(std::string_view message) override { lines.emplace_back(message); }
    std::vector<std::string> lines;
};

class LogindSleepTest : public ::testing::Test {
protected:
    void listen(Duration firstDelay = Duration(10)) {
        const auto begin = Clock::now();
        sleep_.emplace(
            queue_, log_, [this] { ++wakes_; }, LogindSleep::Settings{firstDelay, answerTime});
        longestTurn_ = std::max(longestTurn_, Clock::now() - begin);
    }
    void turn() {
        const auto begin = Clock::now();
        QCoreApplication::processEvents();
        longestTurn_ = std::max(longestTurn_, Clock::now() - begin);
    }
    bool turnUntil(const std::function<bool()>& condition) {
        return pollUntil(patience, [&] {
            turn();
            return condition();
        });
    }
    bool becomesListener() {
        return turnUntil([] { return bus_->hasSleepListener(); });
    }
    /// Whether a wake is noticed that comes after all that came before.
    bool noticesWakes(const MockLogind& logind) {
        const int before = wakes_;
        logind.prepareForSleep(false);
        return turnUntil([&] { return wakes_ > before; });
    }

    static std::unique_ptr<SystemBus> bus_;
    LinesLog log_;
    int wakes_ = 0;
    Clock::duration longestTurn_{};
    MonotonicClock clock_;
    QtRunLoop loop_{clock_};
    MainQueue queue_{loop_, clock_};
    std::optional<LogindSleep> sleep_;

    /// The bus library reads the address once in a process, so all tests have the same.
    static void SetUpTestSuite() {
        if (bus_)
            return;
        bus_ = std::make_unique<SystemBus>();
        ::setenv("DBUS_SYSTEM_BUS_ADDRESS", bus_->address().c_str(), 1);
    }
    void SetUp() override {
        std::filesystem::remove(socketOf(*bus_)); // a killed bus leaves it
        loop_.drive(queue_);
    }
    void TearDown() override { bus_->kill(); }
};

std::unique_ptr<SystemBus> LogindSleepTest::bus_;

/// A socket in the bus's place that takes connections and says nothing.
class MuteBus {
public:
    explicit MuteBus(const std::string& path)
        : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
        sockaddr_un name{};
        name.sun_family = AF_UNIX;
        path.copy(static_cast<char*>(name.sun_path), sizeof name.sun_path - 1);
        EXPECT_EQ(::bind(socket_, reinterpret_cast<const sockaddr*>(&name), sizeof name), 0);
        EXPECT_EQ(::listen(socket_, 8), 0);
    }
    ~MuteBus() { ::close(socket_); }
    MuteBus(const MuteBus&) = delete;
    MuteBus& operator=(const MuteBus&) = delete;

    /// Hangs up on whoever has called. Returns whether somebody had.
    [[nodiscard]] bool hangUp() const {
        const int caller = ::accept(socket_, nullptr, nullptr);
        return caller >= 0 && ::close(caller) == 0;
    }

private:
    int socket_;
};

TEST_F(LogindSleepTest, EachWakeOfLogindsIsNoticedOnce) {
    bus_->start();
    std::optional<MockLogind> logind(*bus_);
    listen();
    ASSERT_TRUE(becomesListener());
    logind->prepareForSleep(true);
    ASSERT_TRUE(noticesWakes(*logind));
    EXPECT_EQ(wakes_, 1) << "falling asleep is no wake";

    logind.reset();
    logind.emplace(*bus_); // a new owner of the name
    logind->prepareForSleep(true);
    ASSERT_TRUE(noticesWakes(*logind));
    EXPECT_EQ(wakes_, 2);

    // Nobody but logind is believed, whether he tells all or one.
    const BusClient stranger(bus_->address());
    auto all = QDBusMessage::createSignal("/org/freedesktop/login1",
                                          "org.freedesktop.login1.Manager", "PrepareForSleep");
    all << false;
    stranger.send(all);
    for (const QString& name : stranger.others()) {
        auto one = QDBusMessage::createTargetedSignal(
            name, "/org/freedesktop/login1", "org.freedesktop.login1.Manager", "PrepareForSleep");
        one << false;
        stranger.send(one);
    }
    ASSERT_TRUE(noticesWakes(*logind));
    EXPECT_EQ(wakes_, 3);
    EXPECT_THAT(log_.lines, ElementsAre());
}

TEST_F(LogindSleepTest, ABusThatDiesIsToldOnceAndUsedAgainWhenItIsBack) {
    bus_->start();
    listen();
    for (std::size_t deaths = 0; deaths < 3; ++deaths) {
        ASSERT_TRUE(becomesListener());
        const MockLogind logind(*bus_);
        ASSERT_TRUE(noticesWakes(logind));
        EXPECT_EQ(log_.lines.size(), deaths);
        bus_->kill();
        ASSERT_TRUE(turnUntil([&] { return log_.lines.size() > deaths; }));
        bus_->start();
    }
    ASSERT_TRUE(becomesListener());
    EXPECT_EQ(log_.lines,
              std::vector<std::string>(
                  3, "ERROR: Wake from sleep cannot be noticed: the system bus went away"));
    EXPECT_LT(longestTurn_, unnoticed);
}

TEST_F(LogindSleepTest, WithoutABusOneLineSaysSoUntilOneComes) {
    listen();
    ASSERT_TRUE(turnUntil([this] { return !log_.lines.empty(); }));
    bus_->start();
    ASSERT_TRUE(becomesListener());
    const MockLogind logind(*bus_);
    EXPECT_TRUE(noticesWakes(logind));
    EXPECT_THAT(log_.lines, ElementsAre("ERROR: Wake from sleep cannot be noticed: no system bus "
                                        "(No such file or directory)"));
}

TEST_F(LogindSleepTest, ABusThatNeverAnswersHoldsNeitherTheMainThreadNorOtherBusesUp) {
    const MuteBus mute(socketOf(*bus_));
    const SessionBus another;
    const BusClient client(another.address());
    listen();
    ASSERT_TRUE(turnUntil([&] {
        const auto begin = Clock::now();
        EXPECT_FALSE(client.hasService("org.noctra.Nobody"));
        longestTurn_ = std::max(longestTurn_, Clock::now() - begin);
        return !log_.lines.empty();
    }));
    EXPECT_LT(longestTurn_, unnoticed);
    EXPECT_THAT(log_.lines, ElementsAre("ERROR: Wake from sleep cannot be noticed: no system bus "
                                        "(it does not answer)"));
    const auto begin = Clock::now();
    sleep_.reset();
    EXPECT_LT(Clock::now() - begin, 4 * answerTime);
}

TEST_F(LogindSleepTest, NothingIsHeardAfterItsEnd) {
    bus_->start();
    const MockLogind logind(*bus_);
    listen();
    ASSERT_TRUE(becomesListener());
    ASSERT_TRUE(noticesWakes(logind));
    logind.prepareForSleep(false);
    sleep_.reset();
    EXPECT_TRUE(turnUntil([] { return !bus_->hasSleepListener(); }));
    EXPECT_EQ(wakes_, 1);
}

} // namespace

} // namespace noctra::desktop
