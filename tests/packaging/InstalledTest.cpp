// The program as it is installed: what lies where, and the ways in which a desktop starts it.

#include <QtDBus/QDBusConnectionInterface>
#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/desktop/support/DesktopFixture.h"

namespace noctra::desktop {

namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

const char* const expectedFiles[]{
    "bin/noctra",
    NOCTRA_LIBRARIES "/libnoctra-displayservices.so",
    NOCTRA_LIBRARIES "/libnoctra-panel.so",
    "share/applications/org.noctra.Noctra.desktop",
    "share/dbus-1/services/org.noctra.Noctra.service",
    "share/icons/hicolor/128x128/apps/org.noctra.Noctra.png",
    "share/icons/hicolor/256x256/apps/org.noctra.Noctra.png",
    "share/icons/hicolor/48x48/apps/org.noctra.Noctra.png",
    "share/icons/hicolor/scalable/apps/org.noctra.Noctra.svg",
    "share/icons/hicolor/symbolic/apps/org.noctra.Noctra-symbolic.svg",
    "share/man/man1/noctra.1.gz",
    "share/metainfo/org.noctra.Noctra.metainfo.xml",
    "share/noctra/fonts/Anybody-Bold.ttf",
    "share/noctra/fonts/OFL.txt",
    "share/noctra/icons/active.pdf",
    "share/noctra/icons/off.pdf",
};

/// A session that finds the program in a folder into which it has just been installed.
class Installed : public DesktopFixture {
protected:
    void SetUp() override {
        DesktopFixture::SetUp();
        run({NOCTRA_CMAKE, "--install", NOCTRA_BUILD, "--prefix", prefix_.path()});
        run({"update-desktop-database", prefix_ / "share/applications"});
        desktop().setVariable("PATH", prefix_ / "bin:/usr/bin:/bin");
        desktop().setVariable("XDG_DATA_DIRS", prefix_ / "share:/usr/share");
        address_ = "unix:path=" + (prefix_ / "bus").string();
        desktop().setVariable("DBUS_SESSION_BUS_ADDRESS", address_);
        bus_ = desktop().startOther({"dbus-daemon", "--session", "--nofork", "--nopidfile",
                                     "--nosyslog", "--address=" + address_});
        ASSERT_TRUE(pollUntil(patience, [&] { return fs::exists(prefix_ / "bus"); }));
        channel_ = std::make_unique<CommandChannel>(address_);
    }
    void TearDown() override {
        if (const pid_t program = runningProgram(); program > 0) {
            kill(program, SIGTERM);
            EXPECT_TRUE(pollUntil(patience, [&] { return kill(program, 0) != 0; }));
            EXPECT_TRUE(isUntouched());
        }
    }

    void run(const std::vector<std::string>& command) {
        const std::unique_ptr<Program> program = desktop().startOther(command);
        EXPECT_EQ(program->waitForEnding(), exited(0))
            << command.front() << ::testing::PrintToString(program->outputLines())
            << ::testing::PrintToString(program->errorLines());
    }
    /// 0 where there is none.
    [[nodiscard]] pid_t runningProgram() const {
        const QString name = QStringLiteral("installed");
        auto bus = QDBusConnection::connectToBus(QString::fromStdString(address_), name);
        const uint id =
            bus.isConnected() ? bus.interface()->servicePid("org.noctra.Noctra").value() : 0;
        QDBusConnection::disconnectFromBus(name);
        return static_cast<pid_t>(id);
    }
    [[nodiscard]] fs::path runningFile() const {
        return fs::read_symlink("/proc/" + std::to_string(runningProgram()) + "/exe");
    }

    [[nodiscard]] bool hasMapped(const fs::path& file) const {
        const std::string maps = readFile("/proc/" + std::to_string(runningProgram()) + "/maps");
        return maps.find(file.string() + "\n") != std::string::npos;
    }

    const TemporaryFolder prefix_;
    std::string address_;
    std::unique_ptr<Program> bus_;
    std::unique_ptr<CommandChannel> channel_;
};

TEST_F(Installed, EveryFileIsThereAndValid) {
    for (const char* file : expectedFiles)
        EXPECT_TRUE(fs::is_regular_file(prefix_ / file)) << file;
    run({"desktop-file-validate", prefix_ / "share/applications/org.noctra.Noctra.desktop"});
    // AppStream before 1.0 does not know the tag 'developer', which its successors ask for.
    run({"appstreamcli", "validate", "--no-net", "--strict", "--override=unknown-tag=pedantic",
         prefix_ / "share/metainfo/org.noctra.Noctra.metainfo.xml"});
    run({NOCTRA_SCRIPTS "/check-hardening", "--links-only", prefix_ / expectedFiles[0],
         prefix_ / expectedFiles[1], prefix_ / expectedFiles[2]});
    EXPECT_THAT(readFile(prefix_ / "share/applications/org.noctra.Noctra.desktop"),
                HasSubstr("\nExec=" + (prefix_ / "bin/noctra").string() + " %U\n"));
}

TEST_F(Installed, UnderAFolderWithASpaceInItsNameTheEntriesAreStillValid) {
    const fs::path prefix = prefix_ / "of mine";
    run({NOCTRA_CMAKE, "--install", NOCTRA_BUILD, "--prefix", prefix});
    const fs::path entry = prefix / "share/applications/org.noctra.Noctra.desktop";
    run({"desktop-file-validate", entry});
    const std::string quoted = "\nExec=\"" + (prefix / "bin/noctra").string() + "\"";
    EXPECT_THAT(readFile(entry), HasSubstr(quoted + " %U\n"));
    EXPECT_THAT(readFile(prefix / "share/dbus-1/services/org.noctra.Noctra.service"),
                HasSubstr(quoted + "\n"));
}

TEST_F(Installed, TheBusStartsItForACallAndItMendsItsAutostartEntry) {
    const fs::path autostart =
        desktop().preferencesFile().parent_path().parent_path() / "autostart";
    fs::create_directory(autostart);
    writeFile(autostart / "org.noctra.Noctra.desktop",
              "[Desktop Entry]\nType=Application\nName=Noctra\nExec=/gone/noctra\n");
    channel_->activate();
    EXPECT_TRUE(bus_->waitForLine("Automation command applied: show"));
    EXPECT_EQ(runningFile(), prefix_ / "bin/noctra");
    for (const char* file : {NOCTRA_LIBRARIES "/libnoctra-panel.so",
                             "share/noctra/fonts/Anybody-Bold.ttf"}) // once text is drawn
        EXPECT_TRUE(pollUntil(patience, [&] { return hasMapped(prefix_ / file); })) << file;
    EXPECT_THAT(readFile(autostart / "org.noctra.Noctra.desktop"),
                HasSubstr("\nExec=" + (prefix_ / "bin/noctra").string() + "\n"));
}

TEST_F(Installed, ALinkStartsItAndTheNextOneReachesIt) {
    const std::unique_ptr<Program> first =
        desktop().startOther({"xdg-open", "noctra://toggle"}); // runs as long as the program
    EXPECT_TRUE(becomesDimmed());
    EXPECT_EQ(runningFile(), prefix_ / "bin/noctra");
    run({"xdg-open", "noctra://toggle"});
    EXPECT_TRUE(becomesUntouched());
    EXPECT_TRUE(first->waitForLines(2, "Automation command applied: toggle"));
}

} // namespace

} // namespace noctra::desktop
