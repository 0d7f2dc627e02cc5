// What an entry says, and how it is changed.

#include <cstdlib>

#include "tests/platform/linux/autostart/LoginItemFixture.h"

namespace noctra {

namespace {

class XdgLoginItemTest : public test::LoginItemFixture {};

TEST_F(XdgLoginItemTest, TheEntryTellsTheStatus) {
    struct Case {
        std::string text;
        Status status;
    };
    variables_["XDG_CURRENT_DESKTOP"] = "ubuntu:GNOME";
    write(folder_ / "bin/unrunnable", "");
    const std::string unrunnable = folder_ / "bin/unrunnable";
    const std::string start = "[Desktop Entry]\nType=Application\nName=Noctra\n";
    for (const Case& known : {
             Case{entry(), Status::enabled},
             Case{entry("Hidden=false\nX-GNOME-Autostart-enabled=true\n"), Status::enabled},
             Case{entry("Hidden=true\n"), Status::requiresApproval},
             Case{entry(" Hidden = true \r\n"), Status::requiresApproval},
             Case{entry("X-GNOME-Autostart-enabled=false"), Status::requiresApproval},
             Case{entry("X-MATE-Autostart-enabled=false"), Status::requiresApproval},
             Case{entry("OnlyShowIn=KDE;GNOME;\n"), Status::enabled},
             Case{entry("OnlyShowIn=KDE;XFCE\n"), Status::notRegistered},
             Case{entry("OnlyShowIn=ubuntu\nNotShowIn=GNOME\n"), Status::enabled},
             Case{entry("OnlyShowIn=GNOME\nNotShowIn=ubuntu\n"), Status::notRegistered},
             Case{entry("NotShowIn=KDE;\n"), Status::enabled},
             Case{entry("NotShowIn=KDE;GNOME;\n"), Status::notRegistered},
             Case{entry("TryExec=noctra\n"), Status::enabled},
             Case{entry("TryExec=noctra-gone\n"), Status::notRegistered},
             Case{entry("TryExec=/gone/noctra\n"), Status::notRegistered},
             Case{entry("TryExec=" + unrunnable), Status::notRegistered},
             Case{start + "Exec=" + unrunnable, Status::notRegistered},
             Case{start + "Exec=unrunnable --x", Status::notRegistered},
             Case{entry("#Hidden=true\nHidden[de]=true\n[Other]\nHidden=true\n"), Status::enabled},
             Case{entry("Hidden=true\nHidden=false\n"), Status::enabled},
             Case{"[Other]\nExec=x\n" + entry(), Status::enabled},
             Case{"[Desktop Entry]\nHidden=true\n", Status::requiresApproval},
             Case{start + "Exec=noctra %U\n", Status::enabled},
             Case{start + "Exec=env A=b \"" + program() + "\"\n", Status::enabled},
             Case{start + "Exec=sh -c \"sleep 5; noctra\"\n", Status::enabled},
             Case{start + "Exec=/gone/noctra\n", Status::enabled},
             Case{start + "Exec=\n", Status::notRegistered},
             Case{start, Status::notRegistered},
             Case{"[Desktop Entry]\nExec=" + program(), Status::notRegistered},
             Case{"Exec=" + program(), Status::notRegistered},
             Case{"", Status::notRegistered},
         }) {
        write(own(), known.text);
        EXPECT_EQ(item().status(), known.status) << known.text;
    }
}

TEST_F(XdgLoginItemTest, ASessionWithoutANameStartsWhatIsForNoneInParticular) {
    write(own(), entry("NotShowIn=KDE;\n"));
    EXPECT_EQ(item().status(), Status::enabled);
    write(own(), entry("OnlyShowIn=KDE;\n"));
    EXPECT_EQ(item().status(), Status::notRegistered);
    EXPECT_EQ(item().registerItem(), "");
    EXPECT_EQ(test::readFile(own()), entry());
}

TEST_F(XdgLoginItemTest, RegisteringAndUnregisteringAgain) {
    EXPECT_EQ(item().status(), Status::notRegistered);
    EXPECT_EQ(item().unregisterItem(), "");
    EXPECT_FALSE(exists(config())) << "there was nothing to undo";

    EXPECT_EQ(item().registerItem(), "");
    EXPECT_EQ(item().status(), Status::enabled);
    if (std::system("command -v desktop-file-validate >/dev/null") == 0) {
        EXPECT_EQ(std::system(("desktop-file-validate " + own().string()).c_str()), 0);
    }
    using Permissions = std::filesystem::perms;
    EXPECT_EQ(status(own()).permissions(), Permissions(0644));
    EXPECT_EQ(status(config()).permissions(), Permissions(0700));
    EXPECT_EQ(status(own().parent_path()).permissions(), Permissions(0700));

    EXPECT_EQ(item().unregisterItem(), "");
    EXPECT_EQ(item().status(), Status::notRegistered);
    EXPECT_TRUE(is_empty(own().parent_path())) << "nothing is left over";
}

TEST_F(XdgLoginItemTest, RegisteringChangesOnlyWhatKeepsTheProgramFromStarting) {
    struct Case {
        std::string before;
        std::string after;
    };
    const std::string extras = "# mine\nX-GNOME-Autostart-Delay = 5\nName[de]=Dunkler\n";
    const std::string rest = "\n[Desktop Action x]\nExec=keep\nHidden=true\n";
    const std::string moved = "[Desktop Entry]\nType=Application\nName=Noctra\nExec=/old/noctra\n";
    const std::string wrapped =
        "[Desktop Entry]\nType=Application\nName=Noctra\nExec=noctra-wrapper %U\n";
    variables_["XDG_CURRENT_DESKTOP"] = "ubuntu:GNOME";
    writeProgram(folder_ / "bin/noctra-wrapper");
    write(folder_ / "bin/unrunnable", "");
    for (const Case& known : {
             Case{entry(extras + rest), entry(extras + rest)},
             Case{wrapped + extras, wrapped + extras},
             Case{moved + extras + "TryExec=/old/noctra\n" + rest, entry(extras + rest)},
             Case{entry("Hidden=true\n" + extras + rest), entry(extras + rest)},
             Case{entry("X-GNOME-Autostart-enabled=true\nHidden=true\n"),
                  entry("X-GNOME-Autostart-enabled=true\n")},
             Case{entry(extras + "X-GNOME-Autostart-enabled=false\r\nHidden=false\n"),
                  entry(extras + "Hidden=false\n")},
             Case{entry(extras + "X-MATE-Autostart-enabled=false\nTryExec=gone\n" + rest),
                  entry(extras + rest)},
             Case{wrapped + extras + "TryExec=gone\nTryExec[de]=x\n",
                  wrapped + extras + "TryExec[de]=x\n"},
             Case{entry("TryExec=noctra\nOnlyShowIn=KDE\n" + rest),
                  entry("TryExec=noctra\nOnlyShowIn=KDE;ubuntu;\n" + rest)},
             Case{entry("NotShowIn=KDE;GNOME;LXQt\n"), entry("NotShowIn=KDE;LXQt;\n")},
             Case{entry("NotShowIn=GNOME;ubuntu\n"), entry()},
             Case{"[Desktop Entry]\nType=Application\nName=Noctra\nExec=unrunnable\n" + extras,
                  entry(extras)},
             Case{"[Desktop Entry]\nType=Application\nName=Mine" + rest,
                  "[Desktop Entry]\nType=Application\nName=Mine\nExec=" + program() + rest},
             Case{"[Desktop Entry]\nExec=noctra",
                  "[Desktop Entry]\nExec=noctra\nType=Application\nName=Noctra\n"},
             Case{"", "[Desktop Entry]\nType=Application\nName=Noctra\nExec=" + program() + "\n"},
         }) {
        write(own(), known.before);
        EXPECT_EQ(item().registerItem(), "");
        EXPECT_EQ(test::readFile(own()), known.after);
        EXPECT_EQ(item().status(), Status::enabled) << known.before;
    }
}

TEST_F(XdgLoginItemTest, ASystemWideEntryCountsUntilTheUserHasHisOwn) {
    write(systems(), entry());
    EXPECT_EQ(item().status(), Status::enabled);
    EXPECT_EQ(item().registerItem(), "");
    EXPECT_FALSE(exists(config())) << "it starts already";

    EXPECT_EQ(item().unregisterItem(), "");
    EXPECT_EQ(item().status(), Status::requiresApproval);
    EXPECT_TRUE(test::readFile(own()).ends_with("Exec=" + program() + "\nHidden=true\n"));

    EXPECT_EQ(item().registerItem(), "");
    EXPECT_EQ(item().status(), Status::enabled);
    write(own(), entry("X-Mine=1\n"));
    EXPECT_EQ(item().unregisterItem(), "");
    EXPECT_EQ(test::readFile(own()), entry("X-Mine=1\nHidden=true\n"));

    write(systems(), entry("Hidden=true\n"));
    EXPECT_EQ(item().registerItem(), "");
    EXPECT_EQ(item().status(), Status::enabled) << "also over one that is switched off";
    EXPECT_EQ(item().unregisterItem(), "");
    EXPECT_EQ(test::readFile(own()), entry("X-Mine=1\nHidden=true\n"))
        << "what is the user's own stays";
}

} // namespace

} // namespace noctra
