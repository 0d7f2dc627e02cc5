// How the program starts and ends, and how it fares meanwhile.

#include <algorithm>
#include <array>
#include <csignal>

#include "tests/desktop/soak/Soak.h"

namespace noctra::desktop {

namespace {

// Far above what a panel that is opened, and opened again, takes; far below a leak in each round.
constexpr long moreKiB = 60 * 1024;
constexpr int moreThreads = 8;
constexpr int moreDescriptors = 24;

// What the program may complain of: always, and where its preferences' disk is in the way.
constexpr std::array complaints{
    "Wake from sleep cannot be noticed",
    "Failed to set gamma for display",
    "Failed to capture gamma for display",
    "session bus",
    "table record",
};
constexpr std::array diskComplaints{"The preferences cannot be written", "Login item error"};

bool holdsOneOf(const std::string& line, const auto& texts) {
    return std::ranges::any_of(
        texts, [&](const char* text) { return line.find(text) != std::string::npos; });
}

} // namespace

void Soak::start() {
    const auto preferences = readPreferences();
    const auto number = [&](const char* key, double missing) {
        return preferences.contains(key) ? std::stod(preferences.at(key)) : missing;
    };
    program_ = startDriven(backlight_->launcher());
    logRead_ = 0;
    errorsRead_ = 0;
    atFirst_.reset();
    model_.enabled = {false};
    model_.warmth = number("filterIntensity", 0);
    model_.brightness = number("filterBrightness", 1);
    model_.extremeDim = number("allowExtremeDim", 0) != 0;
    model_.handled = false;
    model_.ignoredUrls = 0;
    model_.mayEndByHand = false;
    model_.recordDoubtful = !runtime_->isUsable();
    model_.saved = readFile(desktop().preferencesFile());
    model_.recordGone = false;
    model_.preferencesGone = false;
    model_.displaysChange = false;
    program_->type("open");
    model_.locked = {number("pwmSafeMode", 0) != 0};
    if (!model_.builtInLit)
        model_.anyMode();
    ++model_.backlightEvents;
}

/// As `expected`, or by hand just before.
Ending Soak::awaitEnding(const Ending& expected) {
    const std::optional<Ending> ending = program_->waitForEnding();
    EXPECT_TRUE(ending == expected || (model_.mayEndByHand && ending == exited(0)))
        << (ending ? testing::PrintToString(*ending) : "it has not ended") << ", not "
        << testing::PrintToString(expected);
    if (model_.loginAsked)
        model_.login.reset(); // it may not have heard of it
    return ending.value_or(expected);
}

void Soak::endAndStartAgain(const Ending& expected) {
    const Ending ending = awaitEnding(expected);
    backlight_->setFailing(false);
    model_.displaysChange = false;
    if (!ending.bySignal) {
        const std::string trouble = tableTrouble(false);
        EXPECT_EQ(trouble, "") << "after the end";
        checkLevelAfterTheEnd();
        keepWhatIsFound(false);
    } else {
        ++model_.crashes;
        model_.levels.insert({1000, backlight_->value()}); // whichever it had just then
        if (model_.recordDoubtful || model_.recordGone)
            for (const auto& [crtc, tables] : model_.own)
                probe().write(crtc, tables.front());
    }
    checkLog();
    start();
}

void Soak::endBySignal() {
    awaitCommands();
    const int signal = chance.of(std::array{SIGTERM, SIGINT, SIGHUP});
    note(std::to_string(signal));
    program_->signal(signal);
    endAndStartAgain(exited(0));
}

void Soak::crash() {
    awaitCommands();
    const int signal = chance.of(std::array{SIGKILL, SIGKILL, SIGABRT, SIGALRM});
    note(std::to_string(signal));
    program_->signal(signal);
    endAndStartAgain({true, signal});
}

/// While it is stopped a lot comes together.
void Soak::stopAndContinue() {
    awaitOtherStarts();
    awaitProgramOnBus();
    program_->signal(SIGSTOP);
    for (int more = chance.below(8); more > 0; --more)
        chance.once(3) ? plugOrUnplug() : openGood(true);
    program_->signal(SIGCONT);
}

void Soak::signalInVain() {
    program_->signal(SIGPIPE);
}

void Soak::loseTheServer() {
    awaitOtherStarts();
    server().killAtOnce();
    const Ending ending = awaitEnding(exited(1));
    EXPECT_TRUE(ending == exited(0) || !program_->errorLines().empty());
    backlight_->setFailing(false);
    checkLevelAfterTheEnd();
    takeDown();
    bringUp();
}

void Soak::checkLog() {
    const bool diskTrouble = model_.diskChanges || !config_->isUsable();
    const std::vector<std::string> messages = program_->messages();
    for (; logRead_ < messages.size(); ++logRead_) {
        const std::string& line = messages[logRead_];
        const bool known =
            holdsOneOf(line, complaints) || (diskTrouble && holdsOneOf(line, diskComplaints));
        EXPECT_TRUE(known || !holdsOneOf(line, std::array{"rror", "ERROR"})) << line;
    }
    const std::vector<std::string> errors = program_->errorLines();
    if (model_.urlsMayBeLost) // libraries complain of a bus that goes in the middle of a call
        errorsRead_ = errors.size();
    EXPECT_EQ(errors.size(), errorsRead_) << errors.back();
    const std::size_t ignored = program_->countLines(ignoredLine);
    if (model_.urlsMayBeLost)
        model_.ignoredUrls = ignored;
    EXPECT_TRUE(ignored == model_.ignoredUrls || !program_->isRunning())
        << ignored << " bad URLs ignored of " << model_.ignoredUrls;
}

Soak::Use Soak::use() const {
    const std::string process = "/proc/" + std::to_string(program_->id());
    return {program_->residentKiB(), static_cast<int>(countFiles(process + "/task")),
            static_cast<int>(countFiles(process + "/fd"))};
}

void Soak::checkProcess() {
    const Use now = use();
    if (!atFirst_)
        atFirst_ = now;
    EXPECT_TRUE(freedMemoryIsKept || now.kib <= atFirst_->kib + moreKiB);
    EXPECT_LE(now.threads, atFirst_->threads + moreThreads);
    EXPECT_LE(now.descriptors, atFirst_->descriptors + moreDescriptors);
    std::cout << " [" << now.kib / 1024 << " MB, " << now.threads << " threads, " << now.descriptors
              << " files]";
}

} // namespace noctra::desktop
