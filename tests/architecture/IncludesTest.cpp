// The direction of dependencies between the folders, as drawn in docs/architecture.md, and the
// folders in which only the standard library may be used; read off the sources' own #include lines.

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;

const fs::path root = NOCTRA_SOURCE_DIR;
const std::set<std::string> tops{"app", "engine", "foundation", "panel", "platform", "pwmsafe"};
const std::set<std::string> standardLibraryOnly{
    "foundation", "platform", "platform/simulated", "engine", "pwmsafe", "panel", "app"};

using Arrow = std::pair<std::string, std::string>;

/// What the picture shows: the folders in it, and from which to which an arrow leads.
struct House {
    std::set<std::string> folders;
    std::set<Arrow> arrows;

    /// Whatever the arrows lead to from `from`, directly or over others.
    [[nodiscard]] std::set<std::string> below(const std::string& from) const {
        std::set<std::string> found;
        std::vector<std::string> left{from};
        while (!left.empty()) {
            const std::string folder = std::exchange(left.back(), {});
            left.pop_back();
            for (const auto& arrow : arrows)
                if (arrow.first == folder && found.insert(arrow.second).second)
                    left.push_back(arrow.second);
        }
        return found;
    }
};

/// Reads the first Mermaid flowchart: `id["folder"]` names a node, `a -- why --> b` is an arrow.
/// Dotted arrows stand for libraries opened at run time, which nobody includes.
House drawnHouse() {
    static const std::regex node(R"re(^\s*(\w+)\["([^"]+)"\]$)re");
    static const std::regex arrow(R"(^\s*(\w+) --(?: [^-]* --)?> (\w+)$)");
    static const std::regex other(
        R"re(^(```mermaid|flowchart TD|\s*\w+\[\["[^"]+"\]\]|\s*\w+ -\. [^-]* \.-> \w+|)$)re");
    House house;
    std::map<std::string, std::string> names;
    const auto name = [&](const std::string& id) {
        return names.contains(id) ? names[id] : id;
    };
    std::ifstream page(root / "docs" / "architecture.md");
    bool inPicture = false;
    std::smatch match;
    for (std::string line; std::getline(page, line);) {
        if (line.starts_with("```") && std::exchange(inPicture, line == "```mermaid"))
            break;
        if (inPicture && std::regex_match(line, match, node))
            names[match[1]] = match[2];
        else if (inPicture && std::regex_match(line, match, arrow))
            house.arrows.insert({name(match[1]), name(match[2])});
        else if (inPicture && !std::regex_match(line, other))
            ADD_FAILURE() << "what is this in the picture? " << line;
    }
    for (const auto& [from, to] : house.arrows)
        house.folders.insert({from, to});
    return house;
}

/// The folder of the picture that `file` is in: the innermost that is drawn.
std::string folderOf(const fs::path& file, const House& house) {
    if (file == "app/main.cpp")
        return "app/linux"; // it puts the program together, like its neighbours there
    for (fs::path folder = file.parent_path(); !folder.empty(); folder = folder.parent_path())
        if (house.folders.contains(folder))
            return folder;
    return file;
}

struct Source {
    fs::path file;
    std::vector<std::string> quoted;
    std::vector<std::string> bracketed;
    std::ptrdiff_t lines = 0;

    explicit Source(fs::path path) : file(std::move(path)) {}
};

std::vector<Source> sources() {
    static const std::regex directive(R"re(^\s*#\s*include\s*([<"])([^">]+)[">])re");
    std::vector<Source> all;
    for (const std::string& top : tops)
        for (const auto& entry : fs::recursive_directory_iterator(root / top)) {
            if (!entry.is_regular_file())
                continue;
            Source source(entry.path().lexically_relative(root));
            const std::string extension = source.file.extension();
            const bool isCode = extension == ".h" || extension == ".cpp";
            std::ifstream file(entry.path());
            std::smatch match;
            for (std::string line; std::getline(file, line); ++source.lines)
                if (isCode && std::regex_search(line, match, directive))
                    (match[1] == "\"" ? source.quoted : source.bracketed).push_back(match[2]);
            all.push_back(std::move(source));
        }
    return all;
}

TEST(Architecture, IncludesGoAlongTheArrowsOfThePicture) {
    const House house = drawnHouse();
    std::set<Arrow> taken;
    for (const Source& source : sources()) {
        const std::string from = folderOf(source.file, house);
        const std::set<std::string> allowed = house.below(from);
        for (const std::string& name : source.quoted) {
            const std::string to = folderOf(name, house);
            taken.insert({from, to});
            EXPECT_TRUE(from == to || allowed.contains(to))
                << source.file << " includes \"" << name << "\": no arrow leads from " << from
                << " to " << to;
        }
    }
    for (const Arrow& arrow : house.arrows)
        EXPECT_TRUE(taken.contains(arrow))
            << "nothing goes along the arrow from " << arrow.first << " to " << arrow.second;
    for (const std::string& folder : house.folders)
        EXPECT_FALSE(house.below(folder).contains(folder))
            << "arrows lead from " << folder << " back to it";
    for (const std::string& top : tops)
        EXPECT_TRUE(house.folders.contains(top)) << top << " is not in the picture";
}

TEST(Architecture, LogicUsesTheStandardLibraryAlone) {
    static const std::regex standard("[a-z_]+"); // <vector>, not <unistd.h>, <QtCore/QString>
    const House house = drawnHouse();
    for (const Source& source : sources()) {
        if (!standardLibraryOnly.contains(folderOf(source.file, house)))
            continue;
        for (const std::string& name : source.bracketed)
            EXPECT_TRUE(std::regex_match(name, standard))
                << source.file << " includes <" << name << ">";
    }
}

TEST(Architecture, NoSourceFileHasGrownTooLong) {
    for (const Source& source : sources())
        EXPECT_LE(source.lines, 400) << source.file;
}

} // namespace
