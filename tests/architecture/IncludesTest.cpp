// The direction of dependencies between the folders, and the folders in which only the standard
// library may be used, read off the sources' own #include lines.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;

const fs::path root = NOCTRA_SOURCE_DIR;

/// What each layer may include of the others. A folder that knows a toolkit is a layer of its own.
const std::map<std::string, std::set<std::string>> allowed{
    {"foundation", {"foundation"}},
    {"platform", {"platform", "foundation"}},
    {"platform/simulated", {"platform/simulated", "platform", "foundation"}},
    {"platform/qt", {"platform/qt", "platform", "foundation"}},
    {"platform/linux", {"platform/linux", "platform/qt", "platform", "foundation"}},
    {"engine", {"engine", "platform", "foundation"}},
    {"pwmsafe", {"pwmsafe", "engine", "platform", "foundation"}},
    {"panel", {"panel", "pwmsafe", "engine", "platform", "foundation"}},
    {"panel/quick",
     {"panel/quick", "panel", "pwmsafe", "engine", "platform", "platform/qt", "foundation"}},
    {"app", {"app", "panel", "pwmsafe", "engine", "platform", "foundation"}},
};
const std::set<std::string> standardLibraryOnly{
    "foundation", "platform", "platform/simulated", "engine", "pwmsafe", "panel", "app"};
/// Whether `file` helps to put the program together, and so may name adapters.
bool composes(const fs::path& file) {
    return file == "app/main.cpp" || file.parent_path() == "app/linux";
}

std::string layerOf(const fs::path& relative) {
    const std::string first = relative.begin()->string();
    if ((first != "platform" && first != "panel") ||
        std::distance(relative.begin(), relative.end()) < 3)
        return first;
    return first + "/" + std::next(relative.begin())->string();
}

struct Include {
    fs::path file;
    std::string name;
    bool quoted;
};

std::vector<Include> includesUnder(const std::string& layer) {
    static const std::regex directive(R"re(^\s*#\s*include\s*([<"])([^">]+)[">])re");
    std::vector<Include> includes;
    if (!fs::exists(root / layer))
        return includes;
    for (const auto& entry : fs::recursive_directory_iterator(root / layer)) {
        const fs::path relative = entry.path().lexically_relative(root);
        const std::string extension = relative.extension();
        if ((extension != ".h" && extension != ".cpp") || layerOf(relative) != layer)
            continue;
        std::ifstream file(entry.path());
        std::smatch match;
        for (std::string line; std::getline(file, line);)
            if (std::regex_search(line, match, directive))
                includes.push_back({relative, match[2], match[1] == "\""});
    }
    return includes;
}

TEST(Architecture, DependenciesRunOneWay) {
    std::size_t seen = 0;
    for (const auto& [layer, others] : allowed)
        for (const Include& include : includesUnder(layer)) {
            ++seen;
            if (!include.quoted || composes(include.file))
                continue;
            const std::string target = layerOf(include.name);
            EXPECT_TRUE(others.contains(target)) << include.file << " includes \"" << include.name
                                                 << "\": " << layer << " must not know " << target;
        }
    EXPECT_GT(seen, 40U) << "the sources were not found";
}

TEST(Architecture, LogicUsesTheStandardLibraryAlone) {
    static const std::regex standard("[a-z_]+"); // <vector>, not <unistd.h>, <QtCore/QString>
    for (const std::string& layer : standardLibraryOnly)
        for (const Include& include : includesUnder(layer)) {
            if (include.quoted || composes(include.file))
                continue;
            EXPECT_TRUE(std::regex_match(include.name, standard))
                << include.file << " includes <" << include.name << ">";
        }
}

TEST(Architecture, NoSourceFileHasGrownTooLong) {
    for (const auto& [layer, others] : allowed) {
        if (!fs::exists(root / layer))
            continue;
        for (const auto& entry : fs::recursive_directory_iterator(root / layer)) {
            if (!entry.is_regular_file())
                continue;
            std::ifstream file(entry.path());
            const auto lines = std::count(std::istreambuf_iterator<char>(file), {}, '\n');
            EXPECT_LE(lines, 400) << entry.path();
        }
    }
}

} // namespace
