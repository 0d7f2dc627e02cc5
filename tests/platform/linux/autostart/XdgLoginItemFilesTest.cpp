// What may be in the way of an entry, and who may look at it while it changes.

#include <atomic>
#include <thread>

#include <sys/stat.h>

#include "tests/platform/linux/autostart/LoginItemFixture.h"

namespace noctra {

namespace {

class XdgLoginItemFilesTest : public test::LoginItemFixture {};

TEST_F(XdgLoginItemFilesTest, WithoutAFolderForItTheItemCannotBeFound) {
    test::writeFile(folder_ / "file", "");
    const std::string file = folder_ / "file";
    using Variables = std::map<std::string, std::string>;
    for (const Variables& variables :
         {Variables{}, Variables{{"HOME", ""}}, Variables{{"HOME", "relative"}},
          Variables{{"HOME", file}}, Variables{{"HOME", file + "/below"}},
          Variables{{"HOME", folder_ / "missing"}}, Variables{{"XDG_CONFIG_HOME", "relative"}},
          Variables{{"XDG_CONFIG_HOME", file}}, Variables{{"XDG_CONFIG_HOME", file + "/below"}}}) {
        variables_ = variables;
        EXPECT_EQ(item().status(), Status::notFound);
        EXPECT_NE(item().registerItem(), "");
        EXPECT_EQ(item().unregisterItem(), "");
    }
    variables_ = {{"XDG_CONFIG_HOME", file}};
    EXPECT_EQ(item().registerItem(), "POSIX error 20 (Not a directory): " + file + "/autostart");
}

TEST_F(XdgLoginItemFilesTest, WhatCannotBeReadIsLeftAlone) {
    const auto isLeftAlone = [this](const std::string& why) {
        EXPECT_EQ(item().status(), Status::notFound) << why;
        const std::string error = why + own().string();
        EXPECT_EQ(item().registerItem(), error);
        EXPECT_EQ(item().unregisterItem(), error);
    };
    std::filesystem::create_directories(own());
    isLeftAlone("POSIX error 21 (Is a directory): ");
    std::filesystem::remove(own());
    ASSERT_EQ(::mkfifo(own().c_str(), 0600), 0);
    isLeftAlone("POSIX error 22 (Invalid argument): ");
    std::filesystem::remove(own());

    const std::string largest = entry("#" + std::string(65536 - entry("#").size(), 'x'));
    write(own(), largest + "x");
    isLeftAlone("POSIX error 27 (File too large): ");
    EXPECT_EQ(test::readFile(own()), largest + "x");
    write(own(), largest);
    EXPECT_EQ(item().status(), Status::enabled);
}

TEST_F(XdgLoginItemFilesTest, ALinkIsReadThroughAndReplacedItself) {
    const Path target = folder_ / "target.desktop";
    std::filesystem::create_directories(own().parent_path());
    for (const Path& destination : {target, Path("dangling"), own()}) {
        std::filesystem::create_symlink(destination, own());
        test::writeFile(target, entry("X-Mine=1\nHidden=true\n"));
        const bool isRead = destination == target;
        EXPECT_EQ(item().status(), isRead ? Status::requiresApproval : Status::notRegistered);
        EXPECT_EQ(item().registerItem(), "");
        EXPECT_EQ(item().status(), Status::enabled);
        EXPECT_FALSE(is_symlink(own()));
        EXPECT_EQ(test::readFile(own()) == entry("X-Mine=1\n"), isRead);
        EXPECT_EQ(test::readFile(target), entry("X-Mine=1\nHidden=true\n"));
        std::filesystem::remove(own());
    }
    std::filesystem::create_symlink(target, own());
    test::writeFile(target, entry());
    EXPECT_EQ(item().unregisterItem(), "");
    EXPECT_EQ(test::readFile(own()), entry("Hidden=true\n"));
    EXPECT_EQ(test::readFile(target), entry());
}

TEST_F(XdgLoginItemFilesTest, NothingIsWrittenWhereNothingChanges) {
    const auto identity = [this] {
        struct stat status {};
        EXPECT_EQ(::stat(own().c_str(), &status), 0);
        return status.st_ino;
    };
    write(own(), entry());
    const auto before = identity();
    EXPECT_EQ(item().registerItem(), "");
    EXPECT_EQ(identity(), before);
    const std::string delayed =
        "[Desktop Entry]\nType=Application\nName=Noctra\nExec=sh -c \"sleep 20; noctra\"\n";
    for (const bool hasSystems : {false, true}) {
        if (hasSystems)
            write(systems(), entry());
        for (const std::string& off :
             {delayed + "Hidden=true\n", delayed + "X-GNOME-Autostart-enabled=false\n",
              delayed + "X-MATE-Autostart-enabled=false\n", delayed + "OnlyShowIn=KDE;\n",
              delayed + "TryExec=noctra-gone\n", std::string("# mine\n")}) {
            write(own(), off);
            EXPECT_EQ(item().unregisterItem(), "");
            EXPECT_EQ(test::readFile(own()), off);
            EXPECT_EQ(identity(), before);
        }
    }
}

TEST_F(XdgLoginItemFilesTest, AReaderSeesTheOldEntryOrTheNewOne) {
    write(systems(), entry());
    const std::string filling = "#" + std::string(40000, 'x') + "\n";
    const std::string on = entry(filling);
    const std::string off = entry(filling + "Hidden=true\n");
    write(own(), on);
    std::atomic<bool> ended = false;
    std::atomic<int> torn = 0;
    std::thread reader([&] {
        while (!ended) {
            const std::string seen = test::readFile(own());
            torn += seen != on && seen != off ? 1 : 0;
        }
    });
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(i % 2 == 0 ? item().unregisterItem() : item().registerItem(), "");
    ended = true;
    reader.join();
    EXPECT_EQ(torn, 0);
    EXPECT_EQ(test::readFile(own()), on);
}

} // namespace

} // namespace noctra
