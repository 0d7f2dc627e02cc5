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

bool isGraphic(char c) {
    return c > 0x20 && c < 0x7F;
}

void checkParts(const Url& url, std::string_view text) {
    require(text.starts_with(url.scheme + ':') && !url.scheme.empty(), "the scheme comes first");
    std::size_t length = url.scheme.size() + url.host.size();
    for (const std::string& component : url.pathComponents) {
        require(!component.empty(), "components are not empty");
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
    require(std::all_of(text.begin(), text.end(), isGraphic), "a URL is one word");
    checkParts(*url, text);

    const auto command = automationCommand(*url);
    if (!command)
        return 0;
    const std::string word(rawValue(*command));
    require(std::count(words.begin(), words.end(), word) == 1, "a command is a known one");
    require(commandInUrl("noctra://" + word) == command, "its word stands for it");
    std::string other(text);
    for (char& c : other)
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    require(commandInUrl(other) == command, "case does not count");
    if (other.find('#') == std::string::npos)
        other += "#x";
    require(other.size() > longestUrl || commandInUrl(other) == command,
            "a fragment does not count");
    return 0;
}
