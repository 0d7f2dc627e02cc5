// The item in the trays that people have: what it looks like, what clicks on it do, and that it is
// there whenever a tray is.

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/desktop/support/PanelFixture.h"
#include "tests/desktop/support/TrayHost.h"

namespace noctra::desktop {

namespace {

// What the icons are drawn in: the active one in its own red, the other as the bar asks for.
constexpr std::uint32_t activeRed = TrayHost::activeRed;
constexpr std::uint32_t white = 0xFFFFFF;
constexpr std::uint32_t black = 0x000000;
constexpr Point elsewhere{100, 500};

struct TrayOfAnyKind : PanelFixture {
    [[nodiscard]] std::optional<Point> item(std::uint32_t color) const {
        return Screenshot(server().display(), TrayHost::placeOfItems(firstDisplay))
            .middleOf(color, TrayHost::enoughPixels);
    }
    [[nodiscard]] bool showsItem(std::uint32_t color) const {
        return pollUntil(patience, [&] { return item(color).has_value(); });
    }
    [[nodiscard]] bool opens() const {
        return pollUntil(patience, [this] { return windows().shows(panelTitle); });
    }
    void rightClick(Point point) const {
        hands().moveTo(point);
        hands().perform({"click", "3"});
    }
};

struct Tray : TrayOfAnyKind, ::testing::WithParamInterface<TrayKind> {
    void SetUp() override {
        TrayOfAnyKind::SetUp();
        host = std::make_unique<TrayHost>(desktop(), GetParam());
    }
    std::unique_ptr<TrayHost> host;
};

TEST_P(Tray, HoldsAnItemThatShowsTheFilterAndOpensAndClosesThePanel) {
    host->start();
    const std::unique_ptr<Program> program = startProgram();
    ASSERT_TRUE(showsItem(white)) << "a template on a dark bar";
    EXPECT_EQ(program->countLines(GetParam() == TrayKind::embedded
                                      ? "Tray: system tray of the X server"
                                      : "Tray: StatusNotifierItem"),
              1U);
    const Point place = *item(white);
    command(*program, "noctra://on");
    ASSERT_TRUE(showsItem(activeRed));
    command(*program, "noctra://off");
    ASSERT_TRUE(showsItem(white));

    for (int round = 0; round < 3; ++round) {
        hands().click(place);
        ASSERT_TRUE(opens()) << round;
        const Box panel = windows().placeOf(panelTitle).value();
        EXPECT_TRUE(firstDisplay.contains(panel.at(0, 0)) && firstDisplay.contains(panel.at(1, 1)))
            << panel;
        EXPECT_FALSE(panel.contains(place)) << "the panel leaves the item free";
        if (round == 0) {
            hands().click(panel.at(0.5, 0.65)); // on bare ground
            hands().click(place);
        } else if (round == 1) {
            hands().click(elsewhere);
        } else {
            hands().type({"Escape"});
        }
        ASSERT_TRUE(panelGoes()) << round;
    }
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

TEST_P(Tray, OffersToQuitAtARightClickAndNothingElse) {
    host->start();
    const std::unique_ptr<Program> program = startDimmed();
    ASSERT_TRUE(showsItem(activeRed));
    const Point place = *item(activeRed);
    const Box below{firstDisplay.width - 250, 0, 250, 100};
    const auto look = [&] {
        return Screenshot(server().display(), below);
    };
    hands().moveTo(place);
    Screenshot hovered = look();
    pollUntil(Duration{1000}, [&] { return std::exchange(hovered, look()) == hovered; });
    rightClick(place);
    ASSERT_TRUE(pollUntil(patience, [&] { return look() != hovered; })) << "the menu comes";
    EXPECT_FALSE(windows().shows(panelTitle));
    hands().type({"Escape"});
    hands().click(place);
    ASSERT_TRUE(opens()) << "left clicks are not the menu's";
    hands().click(elsewhere);
    ASSERT_TRUE(panelGoes());

    // Its first item is its last, too, so that both keys lead to it.
    rightClick(place);
    EXPECT_TRUE(pollUntil(patience, [&] {
        hands().type({"Up", "Return"});
        return !program->isRunning();
    }));
    EXPECT_EQ(program->waitForEnding(), exited(0));
    EXPECT_EQ(program->countLines("App terminating - restoring gamma"), 1U);
    EXPECT_TRUE(isUntouched());
}

TEST_P(Tray, ThatComesLateOrComesBackGetsTheItem) {
    const std::unique_ptr<Program> program = startDimmed();
    for (int round = 0; round < 3; ++round) {
        host->start();
        ASSERT_TRUE(showsItem(activeRed)) << round;
        hands().click(*item(activeRed));
        ASSERT_TRUE(opens()) << round;
        hands().click(elsewhere);
        ASSERT_TRUE(panelGoes());
        host->kill();
        ASSERT_TRUE(pollUntil(patience, [&] { return !item(activeRed); }));
    }
    command(*program, "noctra://show");
    EXPECT_TRUE(opens()) << "without a tray, too";
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

TEST_P(Tray, AndCommandsComeBackWithTheSessionBus) {
    host->start();
    const std::unique_ptr<Program> program = startDimmed();
    ASSERT_TRUE(showsItem(activeRed));
    for (const std::size_t round : {1U, 2U}) {
        desktop().bus().kill();
        ASSERT_TRUE(program->waitForLines(round, busLostLine)) << round;
        EXPECT_TRUE(isDimmed());
        desktop().bus().restart();
        ASSERT_TRUE(program->waitForLines(round, busBackLine)) << round;
        for (const char* url : {"noctra://off", "noctra://on"})
            EXPECT_EQ(desktop().start({url})->waitForEnding(), exited(0));
        EXPECT_TRUE(isDimmed());

        if (GetParam() == TrayKind::notifierItems) {
            host->kill(); // where it has not gone with its bus
            host->start();
        }
        ASSERT_TRUE(showsItem(activeRed)) << round;
        hands().click(*item(activeRed));
        ASSERT_TRUE(opens()) << round;
        hands().click(elsewhere);
        ASSERT_TRUE(panelGoes());
    }
    EXPECT_EQ(program->countLines("Tray: "), 1U);
    EXPECT_EQ(program->countLines("Automation commands"), 4U);
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

INSTANTIATE_TEST_SUITE_P(Hosts, Tray,
                         ::testing::Values(TrayKind::notifierItems, TrayKind::embedded),
                         ::testing::PrintToStringParamName());

using TrayColors = TrayOfAnyKind;

TEST_F(TrayColors, SuitTheBar) {
    for (const auto& [bar, template_] :
         {std::pair(0x101010U, white), {0xF2F2F2U, black}, {0x303080U, white}}) {
        TrayHost host(desktop(), TrayKind::embedded, bar);
        host.start();
        const std::unique_ptr<Program> program = startProgram();
        EXPECT_TRUE(showsItem(template_)) << std::hex << bar;
        command(*program, "noctra://on");
        EXPECT_TRUE(showsItem(activeRed)) << std::hex << bar;
        EXPECT_TRUE(endsCleanly(*program, SIGTERM));
    }
}

using NoTray = TrayOfAnyKind;

TEST_F(NoTray, IsSaidOnceAndThePanelOpensInTheCorner) {
    const std::unique_ptr<Program> program = startProgram();
    ASSERT_TRUE(program->waitForLine("Tray: none on this desktop"));
    for (const bool byUrl : {true, false}) {
        const auto again = desktop().start(byUrl ? std::vector<std::string>{"noctra://show"}
                                                 : std::vector<std::string>{});
        EXPECT_EQ(again->waitForEnding(), exited(0));
        ASSERT_TRUE(opens()) << byUrl;
        EXPECT_EQ(windows().placeOf(panelTitle), (Box{480, 0, 320, 540}));
        hands().click(elsewhere);
        ASSERT_TRUE(panelGoes());
    }
    EXPECT_EQ(program->countLines("Tray: none"), 1U);
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

} // namespace

} // namespace noctra::desktop
