// The panel worked without a mouse.

#include <cmath>
#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "panel/FaderKeys.h"
#include "tests/desktop/support/PanelFixture.h"

namespace noctra::desktop {

namespace {

using ::testing::ElementsAre;

constexpr std::uint32_t ringColor = 0x6CB2FF;

struct PanelKeyboard : PanelFixture {
    /// The name of the control that has the focus; empty where none has it.
    [[nodiscard]] std::string focused() const {
        std::string name;
        for (const Accessible& one : tree().all())
            if (one.is(AccessibleState::focusable) && one.is(AccessibleState::focused))
                name = one.name();
        return name;
    }
    /// Presses the key `count` times; the controls that got the focus, one after the other.
    [[nodiscard]] std::vector<std::string> walk(const std::string& key, int count) const {
        std::vector<std::string> way;
        std::string last = focused();
        for (int step = 0; step < count; ++step) {
            hands().type({key});
            pollUntil(patience, [&] { return focused() != last; });
            way.push_back(last = focused());
        }
        return way;
    }
    void focus(const std::string& name) const {
        for (int step = 0; step < 20 && focused() != name; ++step)
            static_cast<void>(walk("Tab", 1));
        ASSERT_EQ(focused(), name);
    }
    [[nodiscard]] int ringPixels() const {
        return Screenshot(server().display(), panelExtents()).countOf(ringColor);
    }
    [[nodiscard]] bool isChecked(const std::string& name, bool checked) const {
        return becomes(name, [checked](const Accessible& one) {
            return one.is(AccessibleState::checked) == checked;
        });
    }
};

TEST_F(PanelKeyboard, TabGoesThroughEveryControlAndRound) {
    const std::unique_ptr<Program> program = startWithPanel();
    EXPECT_THAT(walk("Tab", 8),
                ElementsAre(controls::gear, controls::warmth, controls::brightness, controls::day,
                            controls::evening, controls::night, controls::power, controls::gear));
    EXPECT_THAT(walk("shift+Tab", 2), ElementsAre(controls::power, controls::night));

    focus(controls::gear);
    hands().type({"Return"});
    ASSERT_TRUE(isFocused(controls::close));
    EXPECT_THAT(walk("Tab", 5), ElementsAre(controls::launchAtLogin, controls::allowExtremeDim,
                                            controls::copy, controls::stop, controls::close));
    EXPECT_THAT(walk("shift+Tab", 1), ElementsAre(controls::stop));
}

TEST_F(PanelKeyboard, SpaceAndEnterPressWhatHasTheFocus) {
    const std::unique_ptr<Program> program = startWithPanel();
    focus(controls::evening);
    hands().type({"space"});
    EXPECT_TRUE(becomesDimmed(1 - 2700.0 / 6500.0, 0.85));
    focus(controls::power);
    hands().type({"Return"});
    EXPECT_TRUE(becomesUntouched());
    hands().type({"KP_Enter"});
    EXPECT_TRUE(becomesDimmed(1 - 2700.0 / 6500.0, 0.85));

    focus(controls::gear);
    hands().type({"space"});
    ASSERT_TRUE(isFocused(controls::close));
    focus(controls::allowExtremeDim);
    hands().type({"space"});
    EXPECT_TRUE(isChecked(controls::allowExtremeDim, true));
    hands().type({"Return"});
    EXPECT_TRUE(isChecked(controls::allowExtremeDim, false));
    focus(controls::stop);
    hands().type({"Return"});
    EXPECT_EQ(program->waitForEnding(), exited(0));
    EXPECT_TRUE(isUntouched());
}

TEST_F(PanelKeyboard, EscapeClosesTheSheetAndThenThePanel) {
    const std::unique_ptr<Program> program = startWithPanel();
    focus(controls::gear);
    hands().type({"Return"});
    ASSERT_TRUE(isFocused(controls::close));
    hands().type({"Escape"});
    EXPECT_TRUE(isFocused(controls::gear)) << "where it came from";
    EXPECT_TRUE(windows().shows(panelTitle));
    hands().type({"Escape"});
    EXPECT_TRUE(panelGoes());
    EXPECT_TRUE(program->isRunning());
}

TEST_F(PanelKeyboard, ASheetThatIsOpenedAgainBeforeItHasLeftHasTheFocus) {
    const std::unique_ptr<Program> program = startWithPanel();
    focus(controls::gear);
    hands().type({"Return"});
    ASSERT_TRUE(isFocused(controls::close));
    hands().type({"Escape"});
    ASSERT_TRUE(isFocused(controls::gear));
    hands().type({"Return"});
    EXPECT_TRUE(isFocused(controls::close));
    EXPECT_THAT(program->errorLines(), testing::IsEmpty());
}

TEST_F(PanelKeyboard, ASheetThatIsOpenedAndClosedAtOnceDoesNotTakeTheFocus) {
    const std::unique_ptr<Program> program = startWithPanel();
    focus(controls::gear);
    program->signal(SIGSTOP); // so that it finds both presses in one turn
    hands().type({"space", "space"});
    program->signal(SIGCONT);
    EXPECT_TRUE(pollUntil(patience, [&] { return !has(controls::sheet); }));
    EXPECT_EQ(walk("Tab", 1), std::vector<std::string>{controls::warmth});
}

TEST_F(PanelKeyboard, KeysMoveAFaderInExactSteps) {
    struct Step {
        const char* key;
        double to;
    };
    using namespace fader_keys;
    const std::unique_ptr<Program> program = startWithPanel();
    click(controls::power);
    focus(controls::warmth);
    const Accessible warmth = control(controls::warmth);
    for (const Step& step :
         {Step{"Home", 0.0}, Step{"Up", arrowStep}, Step{"Right", 2 * arrowStep},
          Step{"Down", arrowStep}, Step{"Page_Up", arrowStep + pageStep}, Step{"Left", pageStep},
          Step{"Page_Down", 0.0}, Step{"Down", 0.0}, Step{"End", 1.0}, Step{"Up", 1.0}}) {
        hands().type({step.key});
        EXPECT_TRUE(becomesDimmed(step.to, presetBrightness)) << step.key;
        EXPECT_TRUE(pollUntil(patience, [&] { return std::abs(warmth.value() - step.to) < 1e-9; }))
            << step.key << " " << warmth.value();
    }
    focus(controls::brightness);
    hands().type({"Home"});
    EXPECT_TRUE(becomesDimmed(1, 0.1));
    hands().type({"Page_Down", "End"});
    EXPECT_TRUE(becomesDimmed(1, 1));
}

TEST_F(PanelKeyboard, TheRingShowsForTheKeyboardOnly) {
    const std::unique_ptr<Program> program = startWithPanel();
    EXPECT_EQ(ringPixels(), 0) << "before the first key";
    click(controls::day);
    ASSERT_TRUE(isFocused(controls::day));
    EXPECT_EQ(ringPixels(), 0) << "after a click";
    hands().type({"Tab"});
    EXPECT_TRUE(pollUntil(patience, [&] { return ringPixels() > 100; }));
    click(controls::evening);
    EXPECT_TRUE(pollUntil(patience, [&] { return ringPixels() == 0; }));
}

} // namespace

} // namespace noctra::desktop
