#include <chrono>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QMap>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>

#include "platform/linux/calibration/ColordProfiles.h"
#include "tests/platform/linux/calibration/PrivateSystemBus.h"
#include "tests/platform/linux/calibration/ScratchFolder.h"
#include "tests/platform/linux/calibration/VcgtProfiles.h"

namespace noctra::test {
namespace {

using Properties = QMap<QString, QString>;

constexpr const char* program = "/usr/libexec/colord";
const QString service = QStringLiteral("org.freedesktop.ColorManager");
const QString manager = QStringLiteral("/org/freedesktop/ColorManager");

/// Gives the process an empty /var/lib/colord of its own.
bool hideStateFolder() {
    return ::unshare(CLONE_NEWNS) == 0 &&
           ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           ::mount("none", "/var/lib/colord", "tmpfs", 0, nullptr) == 0;
}

/// In a chroot the root folder may be none, and then mounts cannot be kept from other processes.
bool rootIsAMountPoint() {
    std::ifstream mounts("/proc/self/mountinfo");
    std::string skipped;
    std::string mountPoint;
    while (mounts >> skipped >> skipped >> skipped >> skipped >> mountPoint) {
        if (mountPoint == "/")
            return true;
        std::getline(mounts, skipped);
    }
    return false;
}

class RealColord : public testing::Test {
protected:
    void SetUp() override {
        if (!std::filesystem::exists(program))
            GTEST_SKIP() << "colord is not installed";
        if (::geteuid() != 0)
            GTEST_SKIP() << "keeping colord off the machine's profiles needs root";
        if (!rootIsAMountPoint())
            GTEST_SKIP() << "keeping colord off the machine's profiles needs a mount point at /";
        qDBusRegisterMetaType<Properties>();
        bus_.emplace();
        daemon_.emplace(std::vector<std::string>{program}, hideStateFolder);
        ASSERT_TRUE(waitUntil([this] { return bus_->hasOwner(service); }));
    }

    QString create(const char* method, const QString& id, const Properties& properties) {
        return bus_
            ->call(service, manager, service, QString::fromLatin1(method),
                   {id, QStringLiteral("normal"), QVariant::fromValue(properties)})
            .arguments()
            .value(0)
            .value<QDBusObjectPath>()
            .path();
    }

    void onDevice(const QString& device, const char* method, const QVariantList& arguments) {
        bus_->call(service, device, service + QStringLiteral(".Device"),
                   QString::fromLatin1(method), arguments);
    }

    std::optional<PrivateSystemBus> bus_;
    std::optional<ChildProcess> daemon_;
};

TEST_F(RealColord, theDefaultProfileOfTheOutputsDeviceIsFoundAsItChanges) {
    const auto device = [&](const char* output) {
        return create("CreateDevice", QString::fromLatin1(output),
                      {{QStringLiteral("Kind"), QStringLiteral("display")},
                       {QStringLiteral("XRANDR_name"), QString::fromLatin1(output)}});
    };
    const auto profile = [&](const std::string& file) {
        return QVariant::fromValue(QDBusObjectPath(
            create("CreateProfile", QString::fromStdString(std::filesystem::path(file).stem()),
                   {{QStringLiteral("Filename"), QString::fromStdString(file)}})));
    };
    const std::string first = writeScratchFile("first.icc", profileWithGamma(1.1));
    const std::string second = writeScratchFile("second.icc", profileWithGamma(1.2));
    const QString panel = device("eDP-1");
    device("DP-1");
    const QVariant firstProfile = profile(first);
    onDevice(panel, "AddProfile", {QStringLiteral("hard"), firstProfile});
    onDevice(panel, "AddProfile", {QStringLiteral("hard"), profile(second)});

    ColordProfiles profiles;
    const auto found = [&](const char* output) {
        profiles.beginPass(std::chrono::seconds(10));
        return profiles.defaultProfileFile(output);
    };
    onDevice(panel, "MakeProfileDefault", {firstProfile});
    EXPECT_EQ(found("eDP-1"), first);
    onDevice(panel, "RemoveProfile", {firstProfile});
    EXPECT_EQ(found("eDP-1"), second);
    EXPECT_EQ(found("DP-1"), "") << "a device without a profile";
    EXPECT_EQ(found("HDMI-1"), "") << "no such device";
    EXPECT_EQ(profiles.defaultProfileFile("eDP-1"), second) << "after an error in the same pass";
    onDevice(panel, "SetEnabled", {false});
    EXPECT_EQ(found("eDP-1"), "") << "switched off";
    onDevice(panel, "SetEnabled", {true});
    EXPECT_EQ(found("eDP-1"), second);
    daemon_.reset();
    EXPECT_EQ(found("eDP-1"), "") << "colord has ended";
}

} // namespace
} // namespace noctra::test
