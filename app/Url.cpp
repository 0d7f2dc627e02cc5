#include "app/Url.h"

#include <algorithm>
#include <cstdint>

namespace noctra {

namespace {

bool isAsciiLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isAsciiDigit(char c) {
    return c >= '0' && c <= '9';
}

/// The length of the scheme at the start of `text`; 0 when there is none.
std::size_t schemeLength(std::string_view text) {
    if (text.empty() || !isAsciiLetter(text.front()))
        return 0;
    const auto* end = std::find_if_not(text.begin(), text.end(), [](char c) {
        return isAsciiLetter(c) || isAsciiDigit(c) || c == '+' || c == '-' || c == '.';
    });
    return end != text.end() && *end == ':' ? static_cast<std::size_t>(end - text.begin()) : 0;
}

/// Well-formed UTF-8 (no overlong forms, no surrogates, nothing above U+10FFFF) without control
/// characters, which could forge log lines and steer the terminal that shows them.
bool isText(std::string_view bytes) {
    std::size_t i = 0;
    while (i < bytes.size()) {
        const auto lead = static_cast<std::uint8_t>(bytes[i++]);
        if (lead < 0x20 || lead == 0x7F)
            return false;
        if (lead < 0x80)
            continue;
        if (lead == 0xC2 && i < bytes.size() && static_cast<std::uint8_t>(bytes[i]) < 0xA0)
            return false; // U+0080 to U+009F
        const int following = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
        std::uint8_t lowest = 0x80;
        std::uint8_t highest = 0xBF;
        switch (lead) {
        case 0xE0:
            lowest = 0xA0;
            break;
        case 0xED:
            highest = 0x9F;
            break;
        case 0xF0:
            lowest = 0x90;
            break;
        case 0xF4:
            highest = 0x8F;
            break;
        default:
            break;
        }
        if (lead < 0xC2 || lead > 0xF4)
            return false;
        for (int n = 0; n < following; ++n, lowest = 0x80, highest = 0xBF) {
            if (i == bytes.size())
                return false;
            const auto next = static_cast<std::uint8_t>(bytes[i++]);
            if (next < lowest || next > highest)
                return false;
        }
    }
    return true;
}

std::string hostOf(std::string_view authority) {
    if (const auto at = authority.rfind('@'); at != std::string_view::npos)
        authority.remove_prefix(at + 1);
    if (!authority.starts_with('[')) // an address in brackets keeps its colons
        authority = authority.substr(0, authority.find(':'));
    return std::string(authority);
}

std::vector<std::string> componentsOf(std::string_view path) {
    std::vector<std::string> components;
    if (path.starts_with('/'))
        components.emplace_back("/");
    while (!path.empty()) {
        const auto slash = path.find('/');
        if (const auto component = path.substr(0, slash); !component.empty())
            components.emplace_back(component);
        path = slash == std::string_view::npos ? std::string_view{} : path.substr(slash + 1);
    }
    return components;
}

} // namespace

bool startsWithUrlScheme(std::string_view text) {
    return schemeLength(text) > 0;
}

std::optional<Url> parseUrl(std::string_view text) {
    const std::size_t scheme = schemeLength(text);
    if (scheme == 0 || text.size() > longestUrl || !isText(text))
        return std::nullopt;

    Url url;
    url.scheme = text.substr(0, scheme);
    std::string_view rest = text.substr(scheme + 1);
    rest = rest.substr(0, rest.find_first_of("?#"));
    if (rest.starts_with("//")) {
        rest.remove_prefix(2);
        const auto slash = rest.find('/');
        url.host = hostOf(rest.substr(0, slash));
        rest = slash == std::string_view::npos ? std::string_view{} : rest.substr(slash);
    }
    url.pathComponents = componentsOf(rest);
    return url;
}

} // namespace noctra
