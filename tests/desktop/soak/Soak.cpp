// What can happen in a round, and what is looked at after it.

#include <sstream>
#include <stdexcept>

#include "tests/desktop/soak/Soak.h"

namespace noctra::desktop {

const std::vector<Soak::Action> Soak::actions{
    {"good URL", 24, &Soak::goodUrl},
    {"bad URL", 8, &Soak::badUrl},
    {"plug", 14, &Soak::plugOrUnplug},
    {"mode", 4, &Soak::changeMode},
    {"wake", 4, &Soak::wake},
    {"system bus", 2, &Soak::restartSystemBus},
    {"session bus", 3, &Soak::restartSessionBus},
    {"tray", 3, &Soak::restartTray},
    {"drag", 6, &Soak::drag},
    {"wheel", 4, &Soak::turnTheWheel},
    {"press", 6, &Soak::press},
    {"settings", 4, &Soak::useTheSettings},
    {"close", 2, &Soak::closePanel},
    {"config", 9, &Soak::disturbConfig},
    {"config gone", 4, &Soak::removeFromConfig},
    {"runtime", 4, &Soak::disturbRuntime},
    {"foreign tables", 6, &Soak::writeForeignTables},
    {"backlight", 5, &Soak::setBacklight},
    {"backlight fails", 2, &Soak::breakBacklight},
    {"PWM-safe mode", 6, &Soak::switchPwmSafe},
    {"login", 3, &Soak::switchLogin},
    {"end", 3, &Soak::endBySignal},
    {"crash", 3, &Soak::crash},
    {"stop", 3, &Soak::stopAndContinue},
    {"vain signal", 2, &Soak::signalInVain},
    {"server", 1, &Soak::loseTheServer},
};

void Soak::settle() {
    backlight_->setFailing(false);
    awaitOtherStarts();
    if (model_.mayEndByHand && !outlivesHands()) {
        note("(stopped by hand)");
        endAndStartAgain(exited(0));
    }
    ASSERT_TRUE(program_->isRunning()) << "it ended by itself";
    awaitProgramOnBus();
    commands_->open({"noctra:?"}); // comes after all that was sent before
    ++model_.ignoredUrls;
    awaitRefresh();
    checkState();
    commands_->open({*model_.enabled.begin() ? "noctra://on" : "noctra://off"});
    checkTables();
    model_.recordGone = model_.recordGone && !runtime_->isUsable();
    checkBacklight();
    EXPECT_TRUE(awaitTrayItem()) << "the tray does not show the item";
    checkPreferences();
    checkAutostart();
    checkLog();
    checkProcess();
    model_.backlightEvents = 0;
    model_.builtInLit = plugged_.contains(0);
    model_.diskChanges = false;
    model_.loginAsked = false;
    model_.displaysChange = false;
    model_.urlsMayBeLost = false;
    model_.handled = false;
    model_.mayEndByHand = false;
}

/// Where the program was stopped meanwhile, one of them may have become the program, and is ended.
void Soak::awaitOtherStarts() {
    for (const std::unique_ptr<Program>& start : otherStarts_) {
        pollUntil(patience, [&] { return !start->isRunning() || isStoppedByHand(); });
        EXPECT_TRUE(isStoppedByHand() || start->waitForEnding() == exited(0));
    }
    otherStarts_.clear();
}

bool Soak::isStoppedByHand() {
    return model_.mayEndByHand && !program_->isRunning();
}

/// Whether it still runs once it has taken up what was done by hand, which comes to it on another
/// way than a question: after the second one at the latest.
bool Soak::outlivesHands() {
    try {
        ask("panel");
        ask("panel");
    } catch (const std::runtime_error&) {
        if (pollUntil(patience, [&] { return !program_->isRunning(); }))
            return false;
        throw;
    }
    return true;
}

/// The program's answer, by names. Throws std::runtime_error where there is none.
Soak::Answer Soak::ask(const std::string& question) {
    const std::string start = question + " ";
    const std::size_t earlier = program_->countLines(start);
    program_->type(question);
    if (!program_->waitForLines(earlier + 1, start))
        throw std::runtime_error("the program does not answer " + question);
    Answer answer;
    for (const std::string& line : program_->outputLines()) {
        if (!line.starts_with(start))
            continue;
        std::istringstream words(line);
        for (std::string word; words >> word;)
            answer[word.substr(0, word.find('='))] = word.substr(word.find('=') + 1);
    }
    return answer;
}

void Soak::checkState() {
    Answer answer;
    EXPECT_TRUE(pollUntil(patience, [&] {
        answer = ask("panel");
        return answer.at("dragging") == "0";
    })) << "a fader is held";
    const bool enabled = answer.at("enabled") == "1";
    const double warmth = std::stod(answer.at("intensity"));
    const double brightness = std::stod(answer.at("brightness"));
    const bool extremeDim = answer.at("extreme") == "1";
    EXPECT_TRUE(model_.enabled.contains(enabled)) << "the filter is " << enabled;
    if (!model_.handled) {
        EXPECT_EQ(warmth, model_.warmth);
        EXPECT_EQ(brightness, model_.brightness);
        EXPECT_EQ(extremeDim, model_.extremeDim);
    }
    EXPECT_TRUE(warmth >= 0 && warmth <= 1) << warmth;
    EXPECT_TRUE(brightness >= (extremeDim ? 0 : 0.1) && brightness <= 1) << brightness;
    model_.enabled = {enabled};
    model_.warmth = warmth;
    model_.brightness = brightness;
    model_.extremeDim = extremeDim;
}

/// What was done by hand last may reach the program after what has been asked since.
void Soak::followHands() {
    if (!model_.handled)
        return;
    model_.anyFilter();
    checkState();
}

} // namespace noctra::desktop
