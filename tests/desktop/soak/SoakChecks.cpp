// What has to hold once all is quiet.

#include <QtDBus/QDBusVariant>
#include <algorithm>
#include <array>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/desktop/soak/Soak.h"
#include "tests/desktop/support/BusClient.h"

namespace noctra::desktop {

namespace {

constexpr int fullLevel = 1000;

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

std::size_t countFiles(const std::filesystem::path& folder) {
    std::error_code none;
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(folder, none), {}));
}

} // namespace

void Soak::settle() {
    backlight_->setFailing(false);
    awaitOtherStarts();
    if (isStoppedByHand()) {
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
    checkTray();
    checkPreferences();
    checkAutostart();
    checkLog();
    checkProcess();
    model_.backlightEvents = 0;
    model_.builtInLit = plugged_.contains(0);
    model_.diskChanges = false;
    model_.displaysChange = false;
    model_.urlsMayBeLost = false;
    model_.handled = false;
    model_.mayEndByHand = false;
}

void Soak::awaitProgramOnBus() {
    if (!program_->isRunning()) // stopped by hand
        return;
    const bool served = pollUntil(patience, [&] { return commands_->isServed(); });
    EXPECT_TRUE(served || !program_->isRunning()) << "the program is not on the bus";
}

bool Soak::isStoppedByHand() {
    return model_.mayEndByHand && !program_->isRunning();
}

/// Where the program was stopped meanwhile, one of them may have become the program, and is ended.
void Soak::awaitOtherStarts() {
    for (const std::unique_ptr<Program>& start : otherStarts_) {
        pollUntil(patience, [&] { return !start->isRunning() || isStoppedByHand(); });
        EXPECT_TRUE(isStoppedByHand() || start->waitForEnding() == exited(0));
    }
    otherStarts_.clear();
}

/// A change of the displays is answered after a while, once for all that came meanwhile.
void Soak::awaitRefresh() {
    if (!model_.displaysChange)
        return;
    const std::size_t refreshes = program_->countLines("Refreshing displays");
    plugs().announceChange();
    EXPECT_TRUE(program_->waitForLines(refreshes + 1, "Refreshing displays"));
}

/// The program's answer, by names.
std::map<std::string, std::string> Soak::ask(const std::string& question) {
    const std::string start = question + " ";
    const std::size_t earlier = program_->countLines(start);
    program_->type(question);
    if (!program_->waitForLines(earlier + 1, start))
        throw std::runtime_error("the program does not answer " + question);
    std::map<std::string, std::string> answer;
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
    const auto answer = ask("panel");
    const bool enabled = answer.at("enabled") == "1";
    const double warmth = std::stod(answer.at("intensity"));
    const double brightness = std::stod(answer.at("brightness"));
    const bool extremeDim = answer.at("extreme") == "1";
    EXPECT_EQ(answer.at("dragging"), "0");
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

/// The tables that a CRTC may have for its own, as far as they fit what it carries.
std::vector<Tables> Soak::ownTablesThatFit(int crtc, const Tables& carried, bool filtered) const {
    std::vector<Tables> fitting;
    for (const Tables& own : model_.own.at(crtc)) {
        TablesByCrtc wanted{{crtc, own}};
        if (filtered)
            wanted = expectedTables(wanted, model_.warmth, model_.brightness);
        if (difference({{crtc, carried}}, wanted, filtered ? 1 : 0).empty() &&
            std::ranges::find(fitting, own) == fitting.end())
            fitting.push_back(own);
    }
    return fitting;
}

std::string Soak::tableTrouble(bool filtered) const {
    const TablesByCrtc lit = probe().readLit();
    std::string trouble;
    for (const auto& [crtc, tables] : probe().readAll()) {
        const bool dimmed = filtered && lit.contains(crtc);
        if (ownTablesThatFit(crtc, tables, dimmed).empty())
            trouble += "CRTC " + std::to_string(crtc) + (dimmed ? " (lit)" : "") + " ends at " +
                       std::to_string(tables.red.back()) + " " +
                       std::to_string(tables.green.back()) + " " +
                       std::to_string(tables.blue.back()) + ", own " +
                       std::to_string(model_.own.at(crtc).front().red.back()) + "...; ";
    }
    return trouble;
}

void Soak::keepWhatIsFound(bool filtered) {
    const TablesByCrtc lit = probe().readLit();
    for (const auto& [crtc, tables] : probe().readAll())
        if (auto fitting = ownTablesThatFit(crtc, tables, filtered && lit.contains(crtc));
            !fitting.empty())
            model_.own[crtc] = std::move(fitting);
}

/// What was done by hand last may reach the program after what has been asked since.
void Soak::followHands() {
    if (!model_.handled)
        return;
    model_.anyFilter();
    checkState();
}

void Soak::checkTables() {
    pollUntil(patience, [&] {
        followHands();
        return tableTrouble(*model_.enabled.begin()).empty();
    });
    EXPECT_EQ(tableTrouble(*model_.enabled.begin()), "");
    keepWhatIsFound(*model_.enabled.begin());
}

void Soak::checkBacklight() {
    std::string mode;
    const bool held = pollUntil(patience, [&] {
        mode = ask("state").at("pwm");
        const bool on = mode == "Locked";
        if (!on && mode != "Off")
            return false;
        if (!plugged_.contains(0))
            return true; // nobody looks at it
        const int level = backlight_->value();
        return model_.locked.contains(on) &&
               (on ? level == fullLevel : model_.levels.contains(level));
    });
    EXPECT_TRUE(held) << "PWM-safe mode is " << mode << ", the backlight at "
                      << backlight_->value();
    if (!plugged_.contains(0))
        return model_.anyMode();
    model_.locked = {mode == "Locked"};
    if (mode == "Off")
        model_.levels = {backlight_->value()};
}

/// Only hosts of StatusNotifierItems say what they show, and only to a program that found them
/// first.
void Soak::checkTray() {
    const BusClient bus(desktop().busAddress());
    constexpr const char* watcher = "org.kde.StatusNotifierWatcher";
    if (program_->countLines("Tray: StatusNotifierItem") == 0 || !bus.hasService(watcher))
        return;
    const auto items = [&] {
        return bus
            .call(watcher, "/StatusNotifierWatcher", "org.freedesktop.DBus.Properties", "Get",
                  {watcher, "RegisteredStatusNotifierItems"})
            .value(0)
            .value<QDBusVariant>()
            .variant()
            .toStringList();
    };
    EXPECT_TRUE(pollUntil(patience, [&] { return items().size() == 1; })) << items().size();
}

std::map<std::string, std::string> Soak::readPreferences() {
    std::istringstream text(readFile(desktop().preferencesFile()));
    std::map<std::string, std::string> values;
    for (std::string line; std::getline(text, line);)
        if (const auto equals = line.find('='); equals != std::string::npos) {
            const std::string value = line.substr(equals + 1);
            values[line.substr(0, equals)] = value == "true" ? "1" : value == "false" ? "0" : value;
        }
    return values;
}

/// Either the last values are in it, or it is the one that was there before the trouble began.
void Soak::checkPreferences() {
    const auto isUpToDate = [&] {
        followHands();
        const auto values = readPreferences();
        const auto is = [&](const char* key, double wanted) {
            // Only PWM-safe mode is not written before it is switched.
            return values.contains(key) ? std::stod(values.at(key)) == wanted
                                        : std::string(key) == "pwmSafeMode" && wanted == 0;
        };
        return is("filterEnabled", *model_.enabled.begin() ? 1 : 0) &&
               is("filterIntensity", model_.warmth) && is("filterBrightness", model_.brightness) &&
               is("allowExtremeDim", model_.extremeDim ? 1 : 0) &&
               (model_.locked.size() > 1 || model_.preferencesGone ||
                is("pwmSafeMode", *model_.locked.begin() ? 1 : 0));
    };
    const std::filesystem::path file = desktop().preferencesFile();
    if (config_->isUsable()) {
        EXPECT_TRUE(pollUntil(patience, isUpToDate)) << readFile(file) << "is not up to date";
    } else {
        const std::string now = readFile(file);
        // Made anew after somebody removed it, it has what was saved before the trouble.
        EXPECT_TRUE(now == model_.saved || model_.preferencesGone ||
                    (model_.diskChanges &&
                     (model_.saved.empty() || readPreferences().contains("filterBrightness"))))
            << now << "is neither new nor\n"
            << model_.saved;
    }
    model_.saved = readFile(file);
    const std::size_t crashes = static_cast<std::size_t>(model_.crashes);
    EXPECT_TRUE(pollUntil(patience, [&] { return countFiles(file.parent_path()) <= 1 + crashes; }));
}

void Soak::checkAutostart() {
    const std::filesystem::path folder = config_->path() / "autostart";
    const std::filesystem::path file = folder / "org.noctra.Noctra.desktop";
    EXPECT_LE(countFiles(folder), 1U + static_cast<unsigned>(model_.crashes));
    const bool exists = std::filesystem::exists(file);
    EXPECT_EQ(exists, model_.login.value_or(exists));
    model_.login = exists;
    const std::string text = readFile(file);
    EXPECT_TRUE(!exists || (text.starts_with("[Desktop Entry]\n") && text.ends_with('\n') &&
                            text.find("\nExec=") != std::string::npos))
        << text;
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
