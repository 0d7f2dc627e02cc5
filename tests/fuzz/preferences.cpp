// The preferences' file, as it may lie there when the program starts: read, used by an engine,
// written and read again.

#include <algorithm>
#include <array>
#include <cctype>
#include <sstream>
#include <string>

#include <QtCore/QMap>
#include <QtCore/QSettings>
#include <QtCore/QVariant>

#include "engine/ColorFilterManager.h"
#include "platform/qt/IniContents.h"
#include "platform/qt/QtPreferences.h"
#include "platform/simulated/SimulatedDesktop.h"
#include "tests/fuzz/support/Input.h"
#include "tests/fuzz/support/ScratchFolder.h"

using namespace noctra;
using fuzz::require;

namespace {

constexpr std::array ownKeys{"filterEnabled", "filterIntensity", "filterBrightness",
                             "allowExtremeDim"};

QMap<QString, QVariant> allIn(const QString& path) {
    const QSettings settings(path, QSettings::IniFormat);
    QMap<QString, QVariant> values;
    for (const QString& key : settings.allKeys())
        if (!key.isEmpty()) // QSettings keeps it and will not read it
            values.insert(key, settings.value(key));
    for (const char* const key : ownKeys)
        values.remove(key);
    return values;
}

void dropMessage(QtMsgType, const QMessageLogContext&, const QString&) {}

bool isOwn(std::string_view line) {
    return std::any_of(ownKeys.begin(), ownKeys.end(),
                       [&](const char* key) { return line.starts_with(key); });
}

/// Whether all lines of `before`, but for values of the program's own, stand in `after`.
bool holdsLines(const std::string& after, std::string before) {
    std::replace(before.begin(), before.end(), '\r', '\n'); // which ends a line alone, too
    std::istringstream lines(before);
    for (std::string line; std::getline(lines, line);) {
        while (!line.empty() && std::isspace(static_cast<unsigned char>(line.back())) != 0)
            line.pop_back();
        line.erase(0, line.find_first_not_of(" \t\v\f\r"));
        if (!isOwn(line) && after.find(line) == std::string::npos)
            return false;
    }
    return true;
}

struct State {
    double intensity = 0;
    double brightness = 1;
    bool allowExtremeDim = false;

    friend bool operator==(const State&, const State&) = default;
};

void write(QtPreferences& preferences, const State& state) {
    preferences.setDouble("filterIntensity", state.intensity);
    preferences.setDouble("filterBrightness", state.brightness);
    preferences.setBool("allowExtremeDim", state.allowExtremeDim);
    preferences.flush();
}

/// What the engine made of the file; it has been written when it returns. The engine's own timer
/// would have another thread write, for which there would be some waiting.
State run(const QString& path) {
    SimulatedDesktop desktop;
    desktop.displays.attach(1, SimulatedDisplays::linearTables());
    QtPreferences preferences(path, desktop.mainQueue, desktop.log);
    ColorFilterManager engine(EngineServices{.log = desktop.log,
                                             .mainQueue = desktop.mainQueue,
                                             .displays = desktop.displays,
                                             .preferences = preferences,
                                             .process = desktop.process});
    static_cast<void>(preferences.boolForKey("hasShownFirstRunPopover"));
    require(!engine.isEnabled, "the filter starts off");
    const State state{engine.intensity, engine.brightness, engine.allowExtremeDim};
    const double least = state.allowExtremeDim ? 0.0 : 0.1;
    require(state.intensity >= 0.0 && state.intensity <= 1.0, "the intensity is in range");
    require(state.brightness >= least && state.brightness <= 1.0, "the brightness is in range");
    engine.isEnabled = true;
    for (const float level : desktop.displays.tablesOf(1).red)
        require(level >= 0.0F && level <= 1.0F, "tables are in range");
    write(preferences, state);
    return state;
}

/// The next run, without an engine.
State runAgain(const QString& path) {
    SimulatedDesktop desktop;
    QtPreferences preferences(path, desktop.mainQueue, desktop.log);
    const State state{preferences.doubleForKey("filterIntensity"),
                      preferences.numberForKey("filterBrightness").value_or(1.0),
                      preferences.boolForKey("allowExtremeDim")};
    write(preferences, state);
    return state;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::ScratchFolder scratch;
    static const auto noWarnings = qInstallMessageHandler(dropMessage); // of values of odd types
    static_cast<void>(noWarnings);
    // A new name each time: QSettings remembers files by their names, sizes and times.
    std::string folder = scratch.newFolder();
    std::string file = folder + "/noctra.conf";
    QString path = QString::fromStdString(file);
    const std::string input(fuzz::Input::textIn({data, size}));
    fuzz::writeFile(file, input);
    const IniContents contents = judgeIni(QByteArray::fromStdString(input));
    const auto before = contents == IniContents::damaged ? decltype(allIn(path))() : allIn(path);

    const State first = run(path);
    switch (contents) {
    case IniContents::plain:
        require(allIn(path) == before, "what the program does not know stays");
        require(!std::filesystem::exists(file + ".before-1"), "a plain file needs no copy");
        break;
    case IniContents::foreign:
        require(std::filesystem::exists(file + ".before-1")
                    ? fuzz::readFile(file + ".before-1") == input
                    : allIn(path) == before && holdsLines(fuzz::readFile(file), input),
                "a copy of a foreign file is kept, or nothing of it is lost");
        break;
    case IniContents::damaged:
        require(fuzz::readFile(file + ".damaged-1") == input, "a damaged file is kept");
        require(first == State{}, "a damaged file says nothing");
        break;
    }
    std::filesystem::rename(folder, folder + "-again");
    folder += "-again";
    file = folder + "/noctra.conf";
    path = QString::fromStdString(file);
    require(runAgain(path) == first, "what was written is read");
    require(!std::filesystem::exists(file + ".damaged-2"), "what the program wrote makes sense");
    // QSettings moves some keys with a slash only when it writes them for the second time.
    const auto bytes = [](const std::string& name) {
        return QByteArray::fromStdString(fuzz::readFile(name));
    };
    require(
        !std::filesystem::exists(file + ".before-2") ||
            !keepsLines(bytes(file + ".before-2"), bytes(file), {ownKeys.begin(), ownKeys.end()}),
        "no copy is kept of what is not lost");
    std::filesystem::remove_all(folder);
    return 0;
}
