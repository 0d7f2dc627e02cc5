// A text that another program hands over as a URL, and the command that is made of it.

#include <algorithm>
#include <string>

#include "app/AutomationCommand.h"
#include "app/Url.h"
#include "tests/fuzz/Fuzz.h"

using namespace noctra;
using fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = fuzz::textIn(data, size);
    const auto url = parseUrl(text);
    if (!url)
        return 0;
    require(startsWithUrlScheme(text), "a URL has a scheme");
    require(text.size() <= longestUrl, "a URL has a length that fits into the log");
    require(std::all_of(text.begin(), text.end(), [](char c) { return c > 0x20 && c < 0x7F; }),
            "a URL is one word");
    const auto command = automationCommand(*url);
    require(!command || commandInUrl("noctra://" + std::string(rawValue(*command))) == command,
            "a command's word stands for it");
    return 0;
}
