#include "platform/linux/autostart/ExecLine.h"

#include <array>
#include <utility>

namespace noctra {

namespace {

/// What a value of a desktop entry cannot hold as it is, and what stands for it after a backslash.
constexpr std::array<std::pair<char, char>, 4> escapes{
    {{'\\', '\\'}, {'\n', 'n'}, {'\t', 't'}, {'\r', 'r'}}};
/// Where one of these is, the whole argument goes into quotation marks; where it is white space, at
/// the latest so that it does not get lost at the value's end.
constexpr std::string_view reserved = " \t\r\n\v\f\"'\\><~|&;$*?#()`";
/// What takes a backslash between quotation marks.
constexpr std::string_view escapedInQuotes = "\"`$\\";

std::string escaped(std::string_view text) {
    std::string value;
    for (const char character : text) {
        char letter = 0;
        for (const auto& [plain, name] : escapes)
            if (plain == character)
                letter = name;
        if (letter != 0)
            value.append(1, '\\').append(1, letter);
        else
            value.append(1, character);
    }
    return value;
}

} // namespace

std::string execLineFor(std::string_view path) {
    const bool quoted = path.empty() || path.find_first_of(reserved) != std::string_view::npos;
    std::string argument;
    for (const char character : path) {
        if (escapedInQuotes.find(character) != std::string_view::npos)
            argument.append(1, '\\');
        argument.append(character == '%' ? 2 : 1, character); // a single one is a field code
    }
    return escaped(quoted ? '"' + argument + '"' : argument);
}

std::string textIn(std::string_view value) {
    std::string text;
    for (std::size_t i = 0; i < value.size(); ++i) {
        char character = value[i];
        if (character == '\\' && i + 1 < value.size()) {
            const char letter = value[i + 1];
            for (const auto& [plain, name] : escapes)
                if (name == letter) {
                    character = plain;
                    ++i;
                }
            if (letter == 's') {
                character = ' ';
                ++i;
            }
        }
        text.append(1, character);
    }
    return text;
}

std::vector<std::string> argumentsIn(std::string_view execLine) {
    std::vector<std::string> arguments;
    const std::string line = textIn(execLine);
    bool isInArgument = false;
    bool isQuoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char next = i + 1 < line.size() ? line[i + 1] : '\0';
        if (!isQuoted && (line[i] == ' ' || line[i] == '\t' || line[i] == '\n')) {
            isInArgument = false;
            continue;
        }
        if (!std::exchange(isInArgument, true))
            arguments.emplace_back();
        if (line[i] == '"') {
            isQuoted = !isQuoted;
            continue;
        }
        const bool isEscape = isQuoted && line[i] == '\\' && next != '\0' &&
                              escapedInQuotes.find(next) != std::string_view::npos;
        if (isEscape || (line[i] == '%' && next == '%'))
            ++i;
        arguments.back().append(1, line[i]);
    }
    return arguments;
}

} // namespace noctra
