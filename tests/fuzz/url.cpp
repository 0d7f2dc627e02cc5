// A text that another program hands over as a URL, and the command that is made of it.

#include <algorithm>
#include <array>
#include <string>

#include "app/AutomationCommand.h"
#include "app/Url.h"
#include "tests/fuzz/support/Input.h"

using namespace noctra;
using fuzz::require;

namespace {

constexpr std::array<std::string_view, 4> words{"on", "off", "toggle", "show"};

bool isControl(char c) {
    return (c >= 0 && c < 0x20) || c == 0x7F;
}

std::optional<AutomationCommand> commandIn(std::string_view text) {
    const auto url = parseUrl(text);
    return url ? automationCommand(*url) : std::nullopt;
}

void checkParts(const Url& url, std::string_view text) {
    require(text.starts_with(url.scheme + ':') && !url.scheme.empty(), "the scheme comes first");
    require(url.host.find_first_of("/?#@") == std::string::npos, "a host has no delimiters");
    std::size_t length = url.scheme.size() + url.host.size();
    for (std::size_t i = 0; i < url.pathComponents.size(); ++i) {
        const std::string& component = url.pathComponents[i];
        require(!component.empty(), "components are not empty");
        require(component.find_first_of("/?#") == std::string::npos || (i == 0 && component == "/"),
                "components have no delimiters");
        require(text.find(component) != std::string_view::npos, "components stand in the text");
        length += component.size();
    }
    require(length <= text.size(), "the parts are not longer than the whole");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = fuzz::Input::textIn({data, size});
    const auto url = parseUrl(text);
    if (!url)
        return 0;
    require(startsWithUrlScheme(text), "a URL has a scheme");
    require(text.size() <= longestUrl, "a URL has a length that fits into the log");
    require(std::none_of(text.begin(), text.end(), isControl), "a URL is one line");
    checkParts(*url, text);

    const auto command = automationCommand(*url);
    if (!command)
        return 0;
    const std::string word(rawValue(*command));
    require(std::count(words.begin(), words.end(), word) == 1, "a command is a known one");
    require(commandIn("noctra://" + word) == command, "its word stands for it");
    std::string other(text);
    for (char& c : other)
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    require(commandIn(other) == command, "case does not count");
    other += "#x";
    require(other.size() > longestUrl || commandIn(other) == command, "a fragment does not count");
    return 0;
}
