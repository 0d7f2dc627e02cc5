// The panel in the hands of somebody who does anything at all.

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iostream>
#include <random>
#include <sstream>
#include <stdexcept>

#include "tests/desktop/support/PanelFixture.h"

namespace noctra::desktop {

namespace {

constexpr int rounds = 50;
constexpr int actionsPerRound = 20;

// Space and Enter are kept apart from what moves the focus: they shall not stop the program.
constexpr std::array movingKeys{"Tab", "shift+Tab", "Up",   "Down", "Page_Up", "Page_Down",
                                "Tab", "Left",      "Home", "End",  "Right",   "Escape"};
constexpr std::array pressingKeys{"space", "Return", "Up", "Down", "Page_Up", "Page_Down", "Home"};

/// The same course of events each time, unless another one is asked for.
unsigned seed() {
    const char* other = std::getenv("NOCTRA_MONKEY_SEED");
    return other != nullptr ? static_cast<unsigned>(std::stoul(other)) : 20260731;
}

/// Random numbers that are the same on every machine.
class Chance {
public:
    int below(int limit) { return static_cast<int>(engine_() % static_cast<unsigned>(limit)); }
    template <typename Values>
    auto of(const Values& values) {
        return values[static_cast<std::size_t>(below(static_cast<int>(values.size())))];
    }
    Point in(const Box& box) { return {box.x + below(box.width), box.y + below(box.height)}; }

private:
    std::mt19937 engine_{seed()};
};

struct State {
    bool shown = false;
    bool enabled = false;
    double warmth = -1;
    double brightness = -1;
    bool extremeDim = false;
};

struct PanelMonkey : PanelFixture {
    Chance chance;
    Box panel;
    Box gear;                 ///< and around it, where it can be clicked too
    Box stop;                 ///< while the sheet is at rest
    std::vector<Box> avoided; ///< by presses of the button
    std::unique_ptr<Program> program;

    Point somewhere() {
        for (;;)
            if (const Point point = chance.in(panel);
                std::ranges::none_of(avoided, [&](const Box& box) { return box.contains(point); }))
                return point;
    }
    /// Where the button that stops the program passes by while the sheet glides to its place.
    [[nodiscard]] Box wayOfTheStop() const {
        const int above = stop.height; // it swings a little too far
        const int top = stop.y - above;
        return {stop.x, top, stop.width, panel.y + panel.height - top};
    }
    static void append(InputDevices::Commands& commands, const InputDevices::Commands& more) {
        commands.insert(commands.end(), more.begin(), more.end());
    }
    template <typename Keys>
    InputDevices::Commands anAction(const Keys& keys) {
        const InputDevices::Commands key{"key", "--delay", "0", chance.of(keys)};
        InputDevices::Commands commands;
        switch (chance.below(5)) {
        case 0:
            commands = InputDevices::moving(somewhere());
            append(commands, {"click", "--delay", "0", "1"});
            break;
        case 1:
            commands = InputDevices::dragging(somewhere(), chance.in(panel));
            break;
        case 2:
            commands = InputDevices::moving(somewhere());
            append(commands, InputDevices::turning(chance.below(13) - 6));
            break;
        case 3: // a key while the button is held
            commands = InputDevices::dragging(somewhere(), chance.in(panel));
            commands.insert(commands.end() - 2, key.begin(), key.end());
            break;
        default:
            commands = key;
        }
        return commands;
    }
    template <typename Keys>
    void play(const Keys& keys) {
        InputDevices::Commands commands;
        for (int action = 0; action < actionsPerRound; ++action)
            append(commands, anAction(keys));
        hands().perform(commands);
    }
    void playARound() {
        if (chance.below(3) == 0 && !has(controls::sheet))
            openSettings();
        const bool moves = chance.below(2) == 0;
        avoided = {moves && !has(controls::sheet) ? gear : wayOfTheStop()};
        if (moves)
            return play(movingKeys);
        const auto stopButton =
            tree().find([](const Accessible& one) { return one.name() == controls::stop; });
        if (stopButton && stopButton->is(AccessibleState::focused))
            hands().type({"Tab"});
        play(pressingKeys);
    }

    [[nodiscard]] State ask() const {
        const std::size_t earlier = program->countLines("panel ");
        program->type("panel");
        program->waitForLines(earlier + 1, "panel ");
        State state;
        for (const std::string& line : program->outputLines()) {
            if (!line.starts_with("panel "))
                continue;
            std::istringstream words(line);
            for (std::string word; words >> word;) {
                const auto value = word.substr(word.find('=') + 1);
                if (word.starts_with("shown="))
                    state.shown = value == "1";
                else if (word.starts_with("enabled="))
                    state.enabled = value == "1";
                else if (word.starts_with("intensity="))
                    state.warmth = std::stod(value);
                else if (word.starts_with("brightness="))
                    state.brightness = std::stod(value);
                else if (word.starts_with("extreme="))
                    state.extremeDim = value == "1";
            }
        }
        return state;
    }
    /// Nothing is held, and the displays carry what the engine says.
    void expectOrder() {
        if (!program->isRunning())
            throw std::runtime_error("the program ended: " + program->messages().back());
        moveAway();
        EXPECT_TRUE(answers(*program, "panel", " dragging=0 cursor=none "));
        State state;
        EXPECT_TRUE(pollUntil(patience, [&] {
            state = ask();
            return state.enabled ? isDimmed(state.warmth, state.brightness) : isUntouched();
        }));
        EXPECT_GE(state.warmth, 0);
        EXPECT_LE(state.warmth, 1);
        EXPECT_GE(state.brightness, state.extremeDim ? 0 : 0.1);
        EXPECT_LE(state.brightness, 1);
    }
};

TEST_F(PanelMonkey, LeavesNothingHeldNothingOutOfRangeAndNoTint) {
    std::cout << "seed " << seed() << "\n";
    program = startDriven();
    showPanel();
    panel = panelExtents();
    gear = control(controls::gear).extents();
    gear = {gear.x - gear.width, gear.y - gear.height, 3 * gear.width, 3 * gear.height};
    openSettings();
    stop = control(controls::stop).extents();
    closeSettings();
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        playARound();
        expectOrder();
        if (!ask().shown)
            showPanel();
    }
    EXPECT_TRUE(pollUntil(patience, [&] { // the sheet may be on its way out already
        const auto close =
            tree().find([](const Accessible& one) { return one.name() == controls::close; });
        if (close)
            hands().click(close->extents().center());
        return !has(controls::sheet);
    }));
    click(controls::evening); // which comes after all that was done before
    EXPECT_TRUE(becomes(controls::evening, [](const Accessible& one) {
        return one.is(AccessibleState::checked);
    })) << "the warmth is thought to be held";
    expectOrder();
    EXPECT_TRUE(isDimmed(1 - 2700.0 / 6500.0, 0.85));
    EXPECT_THAT(program->errorLines(), testing::IsEmpty());
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

} // namespace

} // namespace noctra::desktop
