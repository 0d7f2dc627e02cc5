#include "app/AutomationCommand.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "app/Url.h"

namespace noctra {

namespace {

constexpr std::array<std::pair<AutomationCommand, std::string_view>, 4> words{{
    {AutomationCommand::on, "on"},
    {AutomationCommand::off, "off"},
    {AutomationCommand::toggle, "toggle"},
    {AutomationCommand::show, "show"},
}};

/// White space and line breaks in UTF-8: Unicode's category Zs, the tab, and the line separators.
constexpr std::array<std::string_view, 25> blanks{" ",
                                                  "\t",
                                                  "\n",
                                                  "\v",
                                                  "\f",
                                                  "\r",
                                                  "\xC2\x85",
                                                  "\xC2\xA0",
                                                  "\xE1\x9A\x80",
                                                  "\xE2\x80\x80",
                                                  "\xE2\x80\x81",
                                                  "\xE2\x80\x82",
                                                  "\xE2\x80\x83",
                                                  "\xE2\x80\x84",
                                                  "\xE2\x80\x85",
                                                  "\xE2\x80\x86",
                                                  "\xE2\x80\x87",
                                                  "\xE2\x80\x88",
                                                  "\xE2\x80\x89",
                                                  "\xE2\x80\x8A",
                                                  "\xE2\x80\xA8",
                                                  "\xE2\x80\xA9",
                                                  "\xE2\x80\xAF",
                                                  "\xE2\x81\x9F",
                                                  "\xE3\x80\x80"};

std::string_view trimmed(std::string_view text) {
    const auto* blank = blanks.begin();
    while ((blank = std::find_if(blanks.begin(), blanks.end(), [&](std::string_view b) {
                return text.starts_with(b);
            })) != blanks.end())
        text.remove_prefix(blank->size());
    while ((blank = std::find_if(blanks.begin(), blanks.end(), [&](std::string_view b) {
                return text.ends_with(b);
            })) != blanks.end())
        text.remove_suffix(blank->size());
    return text;
}

/// No letter beyond ASCII folds into one of the words, so ASCII is enough.
std::string lowerCased(std::string_view text) {
    std::string lower(text);
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return lower;
}

} // namespace

std::string_view rawValue(AutomationCommand command) {
    return std::find_if(words.begin(), words.end(),
                        [&](const auto& entry) { return entry.first == command; })
        ->second;
}

std::optional<AutomationCommand> automationCommand(std::string_view rawValue) {
    for (const auto& [command, word] : words)
        if (word == rawValue)
            return command;
    return std::nullopt;
}

std::optional<AutomationCommand> commandInUrl(std::string_view text) {
    const std::optional<Url> url = parseUrl(text);
    return url ? automationCommand(*url) : std::nullopt;
}

std::optional<AutomationCommand> automationCommand(const Url& url) {
    if (lowerCased(url.scheme) != "noctra")
        return std::nullopt;
    if (!url.host.empty())
        return automationCommand(lowerCased(trimmed(url.host)));
    if (url.pathComponents.size() < 2)
        return std::nullopt;
    return automationCommand(lowerCased(trimmed(url.pathComponents[1])));
}

} // namespace noctra
