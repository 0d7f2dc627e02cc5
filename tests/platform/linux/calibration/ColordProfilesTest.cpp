#include "platform/linux/calibration/ColordProfiles.h"

#include <atomic>
#include <chrono>
#include <filesystem>
#include <memory>
#include <thread>
#include <vector>

#include <QDBusMetaType>
#include <QMap>

#include "tests/desktop/support/BusClient.h"
#include "tests/desktop/support/TemporaryFolder.h"
#include "tests/platform/linux/calibration/FakeColord.h"
#include "tests/platform/linux/calibration/VcgtProfiles.h"

namespace noctra::test {
namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

/// Far beyond what any answer needs here: for passes whose budget is not the matter.
constexpr milliseconds ample{10'000};
constexpr milliseconds budget{200};

/// A pass over one output, on a thread of its own: passes need not share one.
std::string lookUp(ColordProfiles& profiles, const std::string& output) {
    std::string file;
    std::thread([&] {
        profiles.beginPass(ample);
        file = profiles.defaultProfileFile(output);
    }).join();
    return file;
}

using ColordProfilesTest = ColordTest;

TEST_F(ColordProfilesTest, ABusAndAColordThatComeAreHeardFromTheNextPassOnAndNoneIsStarted) {
    const desktop::TemporaryFolder services;
    const std::filesystem::path started = services / "started";
    desktop::writeFile(services / "colord.service", std::string("[D-BUS Service]\nName=") +
                                                        colordName + "\nExec=/bin/sh -c \"touch " +
                                                        started.string() + "; false\"\n");
    const std::string starts = "<servicedir>" + services.path().string() + "</servicedir>";
    ColordProfiles profiles;
    for (int run = 1; run <= 2; ++run) {
        SCOPED_TRACE(run);
        EXPECT_EQ(lookUp(profiles, "DP1"), "") << "without a bus";
        bus_->start(starts);
        EXPECT_EQ(profiles.defaultProfileFile("DP1"), "") << "the bus came during the pass";
        EXPECT_EQ(lookUp(profiles, "DP1"), "") << "without colord";
        const FakeColord colord(*bus_, "/profiles");
        EXPECT_EQ(lookUp(profiles, "DP1"), "/profiles/DP1.icc");
        EXPECT_EQ(profiles.defaultProfileFile("DP2"), "/profiles/DP2.icc");
        bus_->kill();
        EXPECT_EQ(profiles.defaultProfileFile("DP1"), "") << "the bus has gone during the pass";
    }
    // A call that has the bus start colord is not answered before the service has run.
    EXPECT_FALSE(std::filesystem::exists(started));
    bus_->start(starts);
    const desktop::BusClient client(bus_->address());
    EXPECT_THROW(client.call(colordName, "/", colordName, "Any"), std::runtime_error);
    EXPECT_TRUE(std::filesystem::exists(started));
}

TEST_F(ColordProfilesTest, AnAnswerThatMakesNoSenseCostsOneDisplayItsProfileOnly) {
    const auto variant = [](const QVariant& value) {
        return QVariantList{QVariant::fromValue(QDBusVariant(value))};
    };
    const QList<QDBusObjectPath> none, bad{QDBusObjectPath("/profile/BAD")};
    const struct {
        const char* situation;
        const char* member;
        QVariantList answer;
    } cases[] = {
        {"no values at all", "FindDeviceByProperty", {}},
        {"no properties", "GetAll", {QVariantMap()}},
        {"no profile", "GetAll", FakeColord::device(QVariant::fromValue(none))},
        {"texts for profiles", "GetAll", FakeColord::device(QStringList{"/p/1"})},
        {"numbers for profiles", "GetAll", FakeColord::device(QVariant::fromValue(QList{7, 8}))},
        {"a device that is off", "GetAll", FakeColord::device(QVariant::fromValue(bad), false)},
        {"a number for a file", "Get", variant(7)},
        {"a relative file name", "Get", variant("profiles/BAD.icc")},
    };
    bus_->start();
    for (const auto& wrong : cases) {
        SCOPED_TRACE(wrong.situation);
        const FakeColord colord(*bus_, "/profiles", [&](const auto& call, const auto& right) {
            const bool isBad = call.path().endsWith("BAD") || call.arguments().contains("BAD");
            return isBad && call.member() == wrong.member ? wrong.answer : right;
        });
        ColordProfiles profiles;
        EXPECT_EQ(lookUp(profiles, "BAD"), "");
        EXPECT_EQ(profiles.defaultProfileFile("GOOD"), "/profiles/GOOD.icc");
    }
}

TEST_F(ColordProfilesTest, APassIsOverWithItsBudgetWhetherSomebodyHangsOrEveryAnswerComes) {
    const std::string newBus = "a bus that takes connections and says nothing";
    const std::string knownBus = "a bus that stops answering";
    for (const std::string& hanging : std::vector<std::string>{"FindDeviceByProperty", "GetAll",
                                                               "Get", newBus, knownBus, "nobody"}) {
        SCOPED_TRACE(hanging);
        ColordProfiles profiles;
        bus_->start();
        {
            std::atomic<int> unanswered = 0;
            const FakeColord colord(*bus_, "/profiles", [&](const auto& call, const auto& right) {
                const bool hangs = call.member() == hanging.c_str();
                unanswered += hangs;
                return hangs ? std::nullopt : std::optional(right);
            });
            EXPECT_EQ(profiles.defaultProfileFile("DP1"), "") << "before the first pass";
            if (hanging == knownBus) {
                EXPECT_EQ(lookUp(profiles, "DP1"), "/profiles/DP1.icc");
            }
            if (hanging == knownBus || hanging == newBus)
                bus_->pause();
            for (int pass = 1; pass <= 2; ++pass) {
                const auto start = Clock::now();
                profiles.beginPass(budget);
                while (!profiles.defaultProfileFile("DP1").empty() && Clock::now() - start < ample)
                    EXPECT_EQ(hanging, "nobody");
                for (int output = 0; output < 16; ++output)
                    EXPECT_EQ(profiles.defaultProfileFile("DP" + std::to_string(output)), "");
                const auto took = Clock::now() - start;
                EXPECT_GE(took, budget / 2) << "it was not waited for";
                EXPECT_LT(took, 3 * budget);
                EXPECT_LE(unanswered, pass) << "it was asked again";
            }
            bus_->kill();
        }
        bus_->start();
        const FakeColord colord(*bus_, "/profiles");
        lookUp(profiles, "DP1"); // may find that the bus it knew has gone
        EXPECT_EQ(lookUp(profiles, "DP1"), "/profiles/DP1.icc");
        profiles.beginPass(milliseconds(-1));
        EXPECT_EQ(profiles.defaultProfileFile("DP1"), "") << "spent before it began";
    }
}

/// A map of texts, as D-Bus knows it.
using Properties = QMap<QString, QString>;

TEST_F(ColordProfilesTest, TheProfileThatARealColordHasForAnOutputIsFoundAsItChanges) {
    const desktop::TemporaryFolder folder;
    // With mounts of its own.
    const auto start = [&](const char* command) {
        desktop::ChildProcess::Start start;
        start.arguments = {"unshare", "--mount", "sh", "-c", command};
        start.environment = {"PATH=/usr/sbin:/usr/bin:/sbin:/bin", "HOME=" + folder.path().string(),
                             "DBUS_SYSTEM_BUS_ADDRESS=" + bus_->address()};
        return std::make_unique<desktop::ChildProcess>(start);
    };
    if (start("test -x /usr/libexec/colord")->waitForEnding(desktop::patience) !=
        desktop::exited(0))
        GTEST_SKIP() << "colord, kept off the machine's profiles, takes root and a mount at /";
    bus_->start();
    auto colord = start("mount -t tmpfs none /var/lib/colord && exec /usr/libexec/colord");
    const desktop::BusClient client(bus_->address());
    ASSERT_TRUE(
        desktop::pollUntil(desktop::patience, [&] { return client.hasService(colordName); }));

    qDBusRegisterMetaType<Properties>();
    const auto create = [&](const char* method, const char* id, const Properties& properties) {
        const auto answer = client.call(colordName, "/org/freedesktop/ColorManager", colordName,
                                        method, {id, "normal", QVariant::fromValue(properties)});
        return answer.at(0).value<QDBusObjectPath>();
    };
    const auto device = [&](const char* output) {
        return create("CreateDevice", output, {{"Kind", "display"}, {"XRANDR_name", output}});
    };
    const auto profile = [&](const char* id, const std::string& file) {
        desktop::writeFile(file, asText(profileWith(Vcgt::table)));
        return QVariant::fromValue(create("CreateProfile", id, {{"Filename", file.c_str()}}));
    };
    const QByteArray panel = device("eDP-1").path().toUtf8();
    const auto onPanel = [&](const char* method, const QVariantList& arguments) {
        client.call(colordName, panel, "org.freedesktop.ColorManager.Device", method, arguments);
    };
    const std::string first = folder / "first.icc";
    const std::string second = folder / "second.icc";
    const QVariant firstProfile = profile("1", first);
    device("DP-1");
    onPanel("AddProfile", {"hard", firstProfile});
    onPanel("AddProfile", {"hard", profile("2", second)});

    ColordProfiles profiles;
    onPanel("MakeProfileDefault", {firstProfile});
    EXPECT_EQ(lookUp(profiles, "eDP-1"), first);
    onPanel("RemoveProfile", {firstProfile});
    EXPECT_EQ(lookUp(profiles, "eDP-1"), second);
    EXPECT_EQ(lookUp(profiles, "DP-1"), "") << "a device without a profile";
    EXPECT_EQ(lookUp(profiles, "HDMI-1"), "") << "no such device";
    EXPECT_EQ(profiles.defaultProfileFile("eDP-1"), second) << "after an error in the same pass";
    onPanel("SetEnabled", {false});
    EXPECT_EQ(lookUp(profiles, "eDP-1"), "") << "switched off";
    onPanel("SetEnabled", {true});
    EXPECT_EQ(lookUp(profiles, "eDP-1"), second);
    colord.reset();
    EXPECT_EQ(lookUp(profiles, "eDP-1"), "") << "colord has ended";
}

} // namespace
} // namespace noctra::test
