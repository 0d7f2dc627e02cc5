#include <chrono>
#include <optional>
#include <string>
#include <thread>

#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "platform/linux/calibration/ColordProfiles.h"
#include "tests/platform/linux/calibration/FakeColord.h"
#include "tests/platform/linux/calibration/PrivateSystemBus.h"

namespace noctra::test {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// Far beyond what any answer needs here: budgets in tests that are not about them.
constexpr milliseconds ample{10'000};

std::optional<QVariantList> goodAnswer(const QDBusMessage& call) {
    return FakeColord::rightAnswer(call, "/profiles");
}

/// Listens at the bus's address and never says a word.
class SilentBus {
public:
    SilentBus() : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{AF_UNIX, {}};
        const std::string path = PrivateSystemBus::socketPath();
        ::unlink(path.c_str());
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        EXPECT_EQ(::bind(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        EXPECT_EQ(::listen(socket_, 8), 0);
    }
    SilentBus(const SilentBus&) = delete;
    SilentBus& operator=(const SilentBus&) = delete;
    ~SilentBus() {
        ::close(socket_);
        ::unlink(PrivateSystemBus::socketPath().c_str());
    }

private:
    const int socket_;
};

std::string lookUp(ColordProfiles& profiles, const std::string& output) {
    profiles.beginPass(ample);
    return profiles.defaultProfileFile(output);
}

/// Has the bus start a service that it can start.
bool starts(PrivateSystemBus& bus, const std::string& service) {
    const QString name = QStringLiteral("org.freedesktop.DBus");
    auto start = QDBusMessage::createMethodCall(name, QStringLiteral("/org/freedesktop/DBus"), name,
                                                QStringLiteral("StartServiceByName"));
    start << QString::fromStdString(service) << 0U;
    const QDBusPendingCall pending = bus.client().asyncCall(start);
    return waitUntil([&] { return std::filesystem::exists(bus.activationMark(service)); });
}

TEST(ColordProfiles, nothingIsFoundAndNothingIsStartedWhereNoColordRuns) {
    ColordProfiles profiles;
    EXPECT_EQ(lookUp(profiles, "DP1"), "") << "without a bus";

    PrivateSystemBus bus;
    EXPECT_EQ(profiles.defaultProfileFile("DP1"), "") << "the bus came during the pass";
    EXPECT_EQ(lookUp(profiles, "DP1"), "") << "with a bus that could start colord";

    // Starts show, in the order in which they were asked for.
    const std::string colord = "org.freedesktop.ColorManager";
    EXPECT_TRUE(starts(bus, PrivateSystemBus::otherService));
    EXPECT_FALSE(std::filesystem::exists(bus.activationMark(colord)));
    EXPECT_TRUE(starts(bus, colord));
}

TEST(ColordProfiles, aBusThatIsStartedAgainIsUsedFromTheNextPassOn) {
    ColordProfiles profiles;
    for (int run = 1; run <= 2; ++run) {
        {
            PrivateSystemBus bus;
            const FakeColord colord(goodAnswer);
            EXPECT_EQ(lookUp(profiles, "DP1"), "/profiles/DP1.icc") << "run " << run;
            EXPECT_EQ(profiles.defaultProfileFile("DP2"), "/profiles/DP2.icc");
        }
        EXPECT_EQ(profiles.defaultProfileFile("DP1"), "") << "the bus has gone during the pass";
        EXPECT_EQ(lookUp(profiles, "DP1"), "") << "the bus has gone before the pass";
    }
}

TEST(ColordProfiles, passesAreMadeOnOneThreadAfterAnother) {
    PrivateSystemBus bus;
    const FakeColord colord(goodAnswer);
    ColordProfiles profiles;
    for (const char* output : {"DP1", "HDMI1", "eDP1"}) {
        std::string file;
        std::thread([&] { file = lookUp(profiles, output); }).join();
        EXPECT_EQ(file, std::string("/profiles/") + output + ".icc");
    }
}

TEST(ColordProfiles, anAnswerThatMakesNoSenseCostsOneDisplayItsProfileOnly) {
    const auto paths = [](std::initializer_list<const char*> list) {
        QList<QDBusObjectPath> result;
        for (const char* path : list)
            result.append(QDBusObjectPath(QString::fromLatin1(path)));
        return QVariant::fromValue(result);
    };
    const auto variant = [](const QVariant& value) {
        return QVariantList{QVariant::fromValue(QDBusVariant(value))};
    };
    const auto good = paths({"/profile/BAD"});
    const struct {
        const char* situation;
        const char* member;
        QVariantList answer;
    } cases[] = {
        {"a text for a device", "FindDeviceByProperty", {QStringLiteral("/device/BAD")}},
        {"no values at all", "FindDeviceByProperty", {}},
        {"no properties", "GetAll", {QVariantMap()}},
        {"a list for properties", "GetAll", {QStringList{QStringLiteral("Profiles")}}},
        {"no profile", "GetAll", FakeColord::device(paths({}))},
        {"texts for profiles", "GetAll", FakeColord::device(QStringList{QStringLiteral("/p/1")})},
        {"numbers for profiles", "GetAll",
         FakeColord::device(QVariant::fromValue(QList<int>{7, 8}))},
        {"a number for profiles", "GetAll", FakeColord::device(7)},
        {"a device that is switched off", "GetAll", FakeColord::device(good, false)},
        {"a number for a file", "Get", variant(7)},
        {"an empty file name", "Get", variant(QString())},
        {"a relative file name", "Get", variant(QStringLiteral("profiles/BAD.icc"))},
        {"a text outside a variant", "Get", {QStringLiteral("/profiles/BAD.icc")}},
    };
    for (const auto& bad : cases) {
        SCOPED_TRACE(bad.situation);
        PrivateSystemBus bus;
        const FakeColord colord([&](const QDBusMessage& call) {
            const bool isBad = call.path().endsWith(QLatin1String("BAD")) ||
                               call.arguments().contains(QStringLiteral("BAD"));
            return isBad && call.member() == QLatin1String(bad.member) ? bad.answer
                                                                       : goodAnswer(call);
        });
        ColordProfiles profiles;
        EXPECT_EQ(lookUp(profiles, "BAD"), "");
        EXPECT_EQ(profiles.defaultProfileFile("GOOD"), "/profiles/GOOD.icc");
    }
}

TEST(ColordProfiles, aColordThatHangsHoldsAPassUpOnceAndForItsBudgetAtMost) {
    constexpr milliseconds budget{200};
    int callsUntilItHangs = 1;
    for (const char* member : {"FindDeviceByProperty", "GetAll", "Get"}) {
        SCOPED_TRACE(member);
        PrivateSystemBus bus;
        const FakeColord colord([&](const QDBusMessage& call) {
            return call.member() == QLatin1String(member) ? std::nullopt : goodAnswer(call);
        });
        ColordProfiles profiles;
        for (int pass = 1; pass <= 2; ++pass) {
            const auto start = steady_clock::now();
            profiles.beginPass(budget);
            for (int output = 0; output < 16; ++output)
                EXPECT_EQ(profiles.defaultProfileFile("DP" + std::to_string(output)), "");
            const auto took = steady_clock::now() - start;
            EXPECT_GE(took, budget / 2) << "it was not waited for";
            EXPECT_LT(took, 2 * budget);
            EXPECT_EQ(colord.callCount(), pass * callsUntilItHangs);
        }
        ++callsUntilItHangs;
    }
}

TEST(ColordProfiles, aBusThatTakesConnectionsAndSaysNothingHoldsAPassUpForItsBudget) {
    constexpr milliseconds budget{100};
    ColordProfiles profiles;
    {
        const SilentBus silent;
        for (int pass = 1; pass <= 2; ++pass) {
            const auto start = steady_clock::now();
            profiles.beginPass(budget);
            for (int output = 0; output < 16; ++output)
                EXPECT_EQ(profiles.defaultProfileFile("DP" + std::to_string(output)), "");
            const auto took = steady_clock::now() - start;
            EXPECT_GE(took, budget / 2) << "it was not waited for";
            EXPECT_LT(took, 3 * budget);
        }
    }
    PrivateSystemBus bus;
    const FakeColord colord(goodAnswer);
    EXPECT_EQ(lookUp(profiles, "DP1"), "/profiles/DP1.icc");
}

TEST(ColordProfiles, aSpentBudgetEndsThePassThoughEveryAnswerComes) {
    PrivateSystemBus bus;
    const FakeColord colord(goodAnswer);
    ColordProfiles profiles;
    EXPECT_EQ(profiles.defaultProfileFile("DP1"), "") << "before the first pass";

    constexpr milliseconds budget{100};
    const auto start = steady_clock::now();
    profiles.beginPass(budget);
    int found = 0;
    while (!profiles.defaultProfileFile("DP1").empty() && steady_clock::now() - start < ample)
        ++found;
    EXPECT_LT(steady_clock::now() - start, 3 * budget);
    EXPECT_GT(found, 0);
    const int calls = colord.callCount();
    EXPECT_EQ(profiles.defaultProfileFile("DP1"), "");
    EXPECT_EQ(colord.callCount(), calls);
    EXPECT_EQ(lookUp(profiles, "DP1"), "/profiles/DP1.icc") << "in the next pass";
    profiles.beginPass(milliseconds(-1));
    EXPECT_EQ(profiles.defaultProfileFile("DP1"), "") << "spent before it began";
}

} // namespace
} // namespace noctra::test
