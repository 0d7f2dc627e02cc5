// Takes the pictures of the panel that the README shows: the real program on a real X server, each
// state reached as a person reaches it. One argument: the folder to write them to.

#include <filesystem>
#include <iostream>

#include <QtCore/QCoreApplication>
#include <gtest/gtest.h>

#include "tests/desktop/support/FakeBacklight.h"
#include "tests/desktop/support/MountNamespace.h"
#include "tests/desktop/support/PanelFixture.h"
#include "tests/desktop/support/TrayHost.h"

namespace noctra::desktop {

namespace {

std::filesystem::path folder;

constexpr int dimBacklight = 400; // of 1000
constexpr const char* severeText = "DISPLAY BRIGHTNESS LOW —\nNOCTRA CANNOT REDUCE PWM HERE";

struct PanelPictures : PanelFixture {
    FakeBacklight backlight{dimBacklight};
    std::unique_ptr<Program> program;

    void SetUp() override {
        ASSERT_TRUE(canPutFoldersElsewhere()) << "the backlight's pictures need root";
        PanelFixture::SetUp();
    }
    void TearDown() override { plugs().setBuiltIn(0, false); }

    void startOnBacklight() {
        plugs().setBuiltIn(0, true);
        program = startDriven(backlight.launcher());
        showPanel();
    }
    /// Waits until the panel has stopped changing.
    [[nodiscard]] bool restsNow() const {
        Screenshot last(server().display(), panelExtents());
        int same = 0;
        return pollUntil(patience, [&] {
            Screenshot now(server().display(), panelExtents());
            same = now == last ? same + 1 : 0;
            last = std::move(now);
            return same == 30; // longer than a frame of the slowest spring takes to show
        });
    }
    void take(const std::string& name) { take(name, panelExtents()); }
    void take(const std::string& name, const Box& box) {
        ASSERT_TRUE(restsNow());
        const auto picture = desktop().startOther(
            {NOCTRA_TAKE_PICTURE, (folder / (name + ".png")).string(), std::to_string(box.x),
             std::to_string(box.y), std::to_string(box.width), std::to_string(box.height)});
        ASSERT_EQ(picture->waitForEnding(), exited(0)) << name;
    }
};

TEST_F(PanelPictures, Filter) {
    program = startWithPanel();
    moveAway();
    take("panel-off");
    click(controls::evening);
    moveAway();
    take("panel-evening");
    openSettings();
    moveAway();
    take("panel-settings");
}

TEST_F(PanelPictures, Tray) {
    TrayHost host(desktop(), TrayKind::notifierItems);
    host.start();
    program = startProgram();
    command(*program, "noctra://on");
    std::optional<Point> item;
    ASSERT_TRUE(pollUntil(patience, [&] {
        item = Screenshot(server().display(), TrayHost::placeOfItems(firstDisplay))
                   .middleOf(TrayHost::activeRed, TrayHost::enoughPixels);
        return item.has_value();
    }));
    hands().click(*item);
    click(controls::evening);
    hands().moveTo({firstDisplay.width - 380, 300});
    take("tray", {firstDisplay.width - 420, 0, 420, firstDisplay.height});
}

TEST_F(PanelPictures, SevereWarning) {
    desktop().copyProgramsWithout("libnoctra-displayservices.so");
    startOnBacklight();
    hands().moveTo(control(severeText).extents().center());
    const Box panel = panelExtents();
    ASSERT_TRUE(pollUntil(patience, [&] {
        return Screenshot(server().display(), panel).countOf(0xFFD60A) > panel.width;
    }));
    take("panel-warning");
}

TEST_F(PanelPictures, PwmSafe) {
    startOnBacklight();
    click(controls::night);
    click(controls::pwmSafe);
    ASSERT_TRUE(reads(controls::pwmSafe, "ON"));
    moveAway();
    take("panel-pwm-safe");
}

} // namespace

} // namespace noctra::desktop

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (argc != 2) {
        std::cerr << "usage: noctra_panel_pictures FOLDER\n";
        return 2;
    }
    const QCoreApplication application(argc, argv); // the message bus library wants one
    noctra::desktop::folder = std::filesystem::absolute(argv[1]);
    std::filesystem::create_directories(noctra::desktop::folder);
    return RUN_ALL_TESTS();
}
