// Disks that are full, read-only or emptied, and what is kept on them.

#include <filesystem>
#include <sstream>

#include "tests/desktop/soak/Soak.h"

namespace noctra::desktop {

namespace {

/// Also while somebody is making files there.
void removeAll(const std::filesystem::path& folder) {
    EXPECT_TRUE(pollUntil(patience, [&] {
        std::error_code refused;
        std::filesystem::remove_all(folder, refused);
        return !refused;
    })) << folder;
}

} // namespace

std::size_t countFiles(const std::filesystem::path& folder) {
    std::error_code none;
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(folder, none), {}));
}

void Soak::disturbConfig() {
    model_.diskChanges = true;
    model_.login.reset();
    if (!config_->isUsable()) {
        config_->repair();
        return note("repaired");
    }
    const bool full = chance.once(2);
    if (full)
        config_->fill();
    else if (!config_->setReadOnly(true))
        return note("(in use)");
    note(full ? "full" : "read-only");
}

void Soak::removeFromConfig() {
    const bool preferences = chance.once(2);
    model_.diskChanges = true;
    config_->repair();
    removeAll(config_->path() / (preferences ? "noctra" : "autostart"));
    note(preferences ? "preferences" : "autostart");
    model_.preferencesGone = model_.preferencesGone || preferences;
    model_.login.reset();
}

void Soak::disturbRuntime() {
    switch (chance.below(3)) {
    case 0:
        runtime_->fill();
        return note("full");
    case 1:
        runtime_->repair();
        removeAll(runtime_->path() / "noctra");
        model_.recordGone = true;
        return note("removed");
    default:
        runtime_->repair();
        return note("repaired");
    }
}

void Soak::switchLogin() {
    const bool on = chance.once(2);
    note(on ? "on" : "off");
    program_->type(on ? "login on" : "login off");
    model_.login.reset();
    model_.loginAsked = true;
    if (config_->isUsable())
        model_.login = on;
}

Soak::Answer Soak::readPreferences() {
    std::istringstream text(readFile(desktop().preferencesFile()));
    Answer values;
    for (std::string line; std::getline(text, line);)
        if (const auto equals = line.find('='); equals != std::string::npos) {
            const std::string value = line.substr(equals + 1);
            values[line.substr(0, equals)] = value == "true" ? "1" : value == "false" ? "0" : value;
        }
    return values;
}

/// What is in the file but not what the program has, or the other way round.
std::string Soak::preferencesTrouble() {
    followHands();
    const Answer values = readPreferences();
    std::string trouble;
    const auto expect = [&](const char* key, double wanted, bool mayBeMissing = false) {
        const auto value = values.find(key);
        if (value == values.end() ? !mayBeMissing : std::stod(value->second) != wanted)
            trouble += std::string(key) + " should be " + std::to_string(wanted) + "; ";
    };
    expect("filterEnabled", *model_.enabled.begin() ? 1 : 0);
    expect("filterIntensity", model_.warmth);
    expect("filterBrightness", model_.brightness);
    expect("allowExtremeDim", model_.extremeDim ? 1 : 0);
    // Written when it is switched only.
    const bool mode = ask("state").at("stored") == "1";
    expect("pwmSafeMode", mode ? 1 : 0, !mode || model_.preferencesGone);
    return trouble;
}

/// Either the last values are in it, or it is the one that was there before the trouble began.
void Soak::checkPreferences() {
    const std::filesystem::path file = desktop().preferencesFile();
    if (config_->isUsable()) {
        std::string trouble;
        pollUntil(patience, [&] { return (trouble = preferencesTrouble()).empty(); });
        EXPECT_EQ(trouble, "") << readFile(file);
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
    EXPECT_TRUE(pollUntil(patience, [&] { return countFiles(file.parent_path()) <= mostFiles(); }));
}

/// A crash in the middle of a save may leave three files beside the one; the next save takes two of
/// them away.
std::size_t Soak::mostFiles() const {
    return 3 + static_cast<std::size_t>(model_.crashes);
}

void Soak::checkAutostart() {
    const std::filesystem::path folder = config_->path() / "autostart";
    const std::filesystem::path file = folder / "org.noctra.Noctra.desktop";
    EXPECT_LE(countFiles(folder), mostFiles());
    const bool exists = std::filesystem::exists(file);
    EXPECT_EQ(exists, model_.login.value_or(exists));
    model_.login = exists;
    const std::string text = readFile(file);
    EXPECT_TRUE(!exists || (text.starts_with("[Desktop Entry]\n") && text.ends_with('\n') &&
                            text.find("\nExec=") != std::string::npos))
        << text;
}

} // namespace noctra::desktop
