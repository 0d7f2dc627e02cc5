#include "platform/linux/XdgLoginItem.h"

#include <filesystem>
#include <map>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"

namespace noctra {

namespace {

using enum LoginItem::Status;
using std::filesystem::path;

const std::string start = "[Desktop Entry]\nType=Application\nName=Noctra\n";

/// The folders of a user and of the system, and the login item in between.
struct XdgLoginItemTest : testing::Test {
    const test::TemporaryFolder folder;
    const path config = folder / "config";
    const path own = config / "autostart/org.noctra.Noctra.desktop";
    const path systems = folder / "xdg/autostart/org.noctra.Noctra.desktop";
    const std::string program = folder / "bin/noctra";
    std::map<std::string, std::string> variables{
        {"XDG_CONFIG_HOME", config},
        {"XDG_CONFIG_DIRS", "relative:" + program + ":" + (folder / "xdg").string()},
        {"XDG_CURRENT_DESKTOP", "ubuntu:GNOME"},
        {"PATH", "/nowhere:" + (folder / "bin").string()}};
    XdgLoginItem item{program, [this](const char* name) {
                          const auto found = variables.find(name);
                          return found == variables.end() ? std::nullopt
                                                          : std::optional(found->second);
                      }};

    XdgLoginItemTest() {
        for (const char* name : {"bin/noctra", "bin/noctra-wrapper", "bin/unrunnable"})
            write(folder / name, "");
        for (const char* name : {"bin/noctra", "bin/noctra-wrapper"})
            permissions(folder / name, std::filesystem::perms(0755));
    }
    static void write(const path& file, const std::string& text) {
        create_directories(file.parent_path());
        test::writeFile(file, text);
    }
    /// An entry that runs the program, with more lines.
    [[nodiscard]] std::string entry(const std::string& more = {}) const {
        return start + "Exec=" + program + "\n" + more;
    }
    void registerItem() { EXPECT_EQ(item.registerItem(), ""); }
    void unregisterItem() { EXPECT_EQ(item.unregisterItem(), ""); }
};

} // namespace

TEST_F(XdgLoginItemTest, WhatStartsItAlreadyIsNotWrittenAgain) {
    for (const std::string& text :
         {entry(), entry("Hidden=false\nX-GNOME-Autostart-enabled=true\n"),
          entry("OnlyShowIn=KDE;GNOME;\n"), entry("OnlyShowIn=ubuntu\nNotShowIn=GNOME\n"),
          entry("NotShowIn=KDE;\n"), entry("TryExec=noctra\n"),
          entry("#Hidden=true\nHidden[de]=true\n[Other]\nHidden=true\n"),
          entry("Hidden=true\nHidden=false\n"), "[Other]\nExec=x\n" + entry(),
          start + "Exec=noctra-wrapper %U\n"}) {
        write(own, text);
        std::filesystem::create_hard_link(own, folder / "same");
        EXPECT_EQ(item.status(), enabled) << text;
        registerItem();
        EXPECT_TRUE(equivalent(own, folder / "same")) << text;
        EXPECT_EQ(test::readFile(own), text);
        std::filesystem::remove(folder / "same");
    }
}

TEST_F(XdgLoginItemTest, RegisteringChangesOnlyWhatKeepsTheProgramFromStarting) {
    struct Case {
        std::string before;
        LoginItem::Status status;
        std::string after;
    };
    const std::string extras = "# mine\nX-GNOME-Autostart-Delay = 5\nName[de]=Dunkler\n";
    const std::string rest = "\n[Desktop Action x]\nExec=keep\nHidden=true\n";
    const std::string moved = start + "Exec=/old/noctra\n",
                      wrapped = start + "Exec=noctra-wrapper\n";
    for (const auto& [before, status, after] : {
             Case{entry("Hidden=true\n" + extras + rest), requiresApproval, entry(extras + rest)},
             Case{entry(" Hidden = true \r\n"), requiresApproval, entry()},
             Case{entry(extras + "X-GNOME-Autostart-enabled=false\r\nHidden=false\n"),
                  requiresApproval, entry(extras + "Hidden=false\n")},
             Case{entry("X-MATE-Autostart-enabled=false\nTryExec=gone\n" + rest), requiresApproval,
                  entry(rest)},
             Case{"[Desktop Entry]\nHidden=true\n", requiresApproval,
                  "[Desktop Entry]\nType=Application\nName=Noctra\nExec=" + program + "\n"},
             Case{wrapped + extras + "TryExec=gone\nTryExec[de]=x\n", notRegistered,
                  wrapped + extras + "TryExec[de]=x\n"},
             Case{entry("TryExec=unrunnable\n"), notRegistered, entry()},
             Case{moved + extras + "TryExec=/old/noctra\n" + rest, notRegistered,
                  entry(extras + rest)},
             Case{moved, enabled, entry()},
             Case{start + "Exec=unrunnable --x\n" + extras, notRegistered, entry(extras)},
             Case{entry("TryExec=noctra\nOnlyShowIn=KDE\n" + rest), notRegistered,
                  entry("TryExec=noctra\nOnlyShowIn=KDE;ubuntu;\n" + rest)},
             Case{entry("OnlyShowIn=GNOME\nNotShowIn=ubuntu\n"), notRegistered,
                  entry("OnlyShowIn=GNOME\n")},
             Case{entry("NotShowIn=KDE;GNOME;LXQt\n"), notRegistered,
                  entry("NotShowIn=KDE;LXQt;\n")},
             Case{entry("NotShowIn=GNOME;ubuntu\n"), notRegistered, entry()},
             Case{start + "Exec=\n" + rest, notRegistered, entry(rest)},
             Case{"[Desktop Entry]\nExec=noctra", notRegistered,
                  "[Desktop Entry]\nExec=noctra\nType=Application\nName=Noctra\n"},
             Case{"Exec=noctra", notRegistered, "Exec=noctra\n" + entry()},
             Case{"", notRegistered, entry()},
         }) {
        write(own, before);
        EXPECT_EQ(item.status(), status) << before;
        if (status != enabled) {
            unregisterItem();
            EXPECT_EQ(test::readFile(own), before) << "it is off already";
        }
        std::filesystem::create_hard_link(own, folder / "opened");
        registerItem();
        EXPECT_EQ(test::readFile(own), after);
        EXPECT_EQ(test::readFile(folder / "opened"), before) << "whoever reads it meanwhile";
        std::filesystem::remove(folder / "opened");
        EXPECT_EQ(item.status(), enabled) << before;
    }
    variables.erase("XDG_CURRENT_DESKTOP");
    write(own, entry("NotShowIn=GNOME\nOnlyShowIn=KDE\n"));
    EXPECT_EQ(item.status(), notRegistered);
    registerItem();
    EXPECT_EQ(test::readFile(own), entry("NotShowIn=GNOME\n"));
}

TEST_F(XdgLoginItemTest, UnregisteringRemovesItsOwnEntryAndHidesOthers) {
    unregisterItem();
    EXPECT_FALSE(exists(config)) << "there was nothing to undo";
    registerItem();
    EXPECT_EQ(item.status(), enabled);
    EXPECT_EQ(status(own).permissions(), std::filesystem::perms(0644));
    EXPECT_EQ(status(config).permissions(), std::filesystem::perms(0700));
    unregisterItem();
    EXPECT_EQ(item.status(), notRegistered);
    EXPECT_TRUE(is_empty(own.parent_path()));

    write(systems, entry());
    EXPECT_EQ(item.status(), enabled);
    registerItem();
    EXPECT_TRUE(is_empty(own.parent_path())) << "it starts already";
    unregisterItem();
    EXPECT_EQ(item.status(), requiresApproval);
    registerItem();
    EXPECT_EQ(item.status(), enabled);

    write(systems, entry("Hidden=true\n"));
    write(own, entry("X-Mine=1\n"));
    unregisterItem();
    EXPECT_EQ(test::readFile(own), entry("X-Mine=1\nHidden=true\n"));
    std::filesystem::remove(own);
    EXPECT_EQ(item.status(), requiresApproval);
    registerItem();
    EXPECT_EQ(item.status(), enabled);
}

TEST_F(XdgLoginItemTest, WithoutAFolderForItTheItemCannotBeFound) {
    using Variables = std::map<std::string, std::string>;
    for (const Variables& unusable :
         {Variables{}, Variables{{"HOME", "relative"}}, Variables{{"HOME", program}},
          Variables{{"HOME", folder / "missing"}}, Variables{{"XDG_CONFIG_HOME", "relative"}},
          Variables{{"XDG_CONFIG_HOME", program + "/below"}},
          Variables{{"XDG_CONFIG_HOME", program}}}) {
        variables = unusable;
        EXPECT_EQ(item.status(), notFound);
        EXPECT_NE(item.registerItem(), "");
        unregisterItem();
    }
    EXPECT_EQ(item.registerItem(), "POSIX error 20 (Not a directory): " + program + "/autostart");
}

TEST_F(XdgLoginItemTest, WhatCannotBeReadIsLeftAlone) {
    const auto isLeftAlone = [this](const std::string& why) {
        EXPECT_EQ(item.status(), notFound) << why;
        EXPECT_EQ(item.registerItem(), why + own.string());
        EXPECT_EQ(item.unregisterItem(), why + own.string());
    };
    create_directories(own);
    isLeftAlone("POSIX error 21 (Is a directory): ");
    std::filesystem::remove(own);
    ASSERT_EQ(::mkfifo(own.c_str(), 0600), 0);
    isLeftAlone("POSIX error 22 (Invalid argument): ");
    std::filesystem::remove(own);
    const std::string largest = entry("#" + std::string(65536 - entry("#").size(), 'x'));
    write(own, largest + "x");
    isLeftAlone("POSIX error 27 (File too large): ");
    write(own, largest);
    EXPECT_EQ(item.status(), enabled);
}

TEST_F(XdgLoginItemTest, ALinkIsReadThroughAndReplacedItself) {
    const path target = folder / "target.desktop";
    create_directories(own.parent_path());
    for (const path& destination : {target, path("dangling"), own}) {
        create_symlink(destination, own);
        test::writeFile(target, entry("X-Mine=1\nHidden=true\n"));
        const bool isRead = destination == target;
        EXPECT_EQ(item.status(), isRead ? requiresApproval : notRegistered);
        registerItem();
        EXPECT_FALSE(is_symlink(own));
        EXPECT_EQ(test::readFile(own) == entry("X-Mine=1\n"), isRead);
        EXPECT_EQ(test::readFile(target), entry("X-Mine=1\nHidden=true\n"));
        std::filesystem::remove(own);
    }
}

} // namespace noctra
