#include "app/Url.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace noctra {

namespace {

constexpr std::string_view unreservedMarks = "-._~";
constexpr std::string_view subDelimiters = "!$&'()*+,;=";
constexpr long highestPort = 65535;

bool isAsciiLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isAsciiDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Of the two digits after a percent sign; nothing where they are none.
std::optional<char> octet(std::string_view digits) {
    std::uint8_t value = 0;
    const auto* const end = digits.data() + std::min<std::size_t>(digits.size(), 2);
    const auto [stop, error] = std::from_chars(digits.data(), end, value, 16);
    if (digits.size() < 2 || stop != end || error != std::errc())
        return std::nullopt;
    return static_cast<char>(value);
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

/// Whether there are only characters that may stand in every part of a URL, encoded octets, and
/// those of `others`.
bool consistsOf(std::string_view text, std::string_view others) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '%' && !octet(text.substr(i + 1)))
            return false;
        if (c != '%' && !isAsciiLetter(c) && !isAsciiDigit(c) &&
            unreservedMarks.find(c) == std::string_view::npos &&
            subDelimiters.find(c) == std::string_view::npos &&
            others.find(c) == std::string_view::npos)
            return false;
    }
    return true;
}

std::string decoded(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto encoded = text[i] == '%' ? octet(text.substr(i + 1)) : std::nullopt;
        result += encoded.value_or(text[i]);
        if (encoded)
            i += 2;
    }
    return result;
}

bool isPort(std::string_view text) {
    long value = 0;
    const auto* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    return text.empty() || (isAsciiDigit(text.front()) && stop == end && error == std::errc() &&
                            value <= highestPort);
}

/// The host, decoded; nothing where `authority` is none.
std::optional<std::string> hostOf(std::string_view authority) {
    if (const auto at = authority.find('@'); at != std::string_view::npos) {
        if (!consistsOf(authority.substr(0, at), ":"))
            return std::nullopt;
        authority.remove_prefix(at + 1);
    }
    // An address in brackets keeps its colons.
    const bool isAddress = authority.starts_with('[');
    const auto end = isAddress ? authority.find(']') : authority.find(':');
    const std::string_view host =
        authority.substr(0, isAddress && end != std::string_view::npos ? end + 1 : end);
    const std::string_view port = authority.substr(host.size());
    if (!consistsOf(host, isAddress ? "[:]" : "") ||
        !isPort(port.substr(port.starts_with(':') ? 1 : 0)))
        return std::nullopt;
    return decoded(host);
}

std::vector<std::string> componentsOf(std::string_view path) {
    std::vector<std::string> components;
    if (path.starts_with('/'))
        components.emplace_back("/");
    while (!path.empty()) {
        const auto slash = path.find('/');
        if (const auto component = path.substr(0, slash); !component.empty())
            components.push_back(decoded(component));
        path = slash == std::string_view::npos ? std::string_view{} : path.substr(slash + 1);
    }
    return components;
}

/// `text` up to `delimiter`, which goes along with what is taken off.
std::string_view takeUpTo(std::string_view& text, char delimiter) {
    const auto end = text.find(delimiter);
    const std::string_view part = text.substr(0, end);
    text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
    return part;
}

} // namespace

bool startsWithUrlScheme(std::string_view text) {
    return schemeLength(text) > 0;
}

std::optional<Url> parseUrl(std::string_view text) {
    const std::size_t scheme = schemeLength(text);
    if (scheme == 0 || text.size() > longestUrl)
        return std::nullopt;

    Url url;
    url.scheme = text.substr(0, scheme);
    std::string_view fragment = text.substr(scheme + 1);
    std::string_view query = takeUpTo(fragment, '#');
    std::string_view path = takeUpTo(query, '?');
    if (path.starts_with("//")) {
        path.remove_prefix(2);
        const std::string_view authority = path.substr(0, path.find('/'));
        path.remove_prefix(authority.size());
        auto host = hostOf(authority);
        if (!host)
            return std::nullopt;
        url.host = std::move(*host);
    }
    if (!consistsOf(path, ":@/") || !consistsOf(query, ":@/?") || !consistsOf(fragment, ":@/?"))
        return std::nullopt;
    url.pathComponents = componentsOf(path);
    return url;
}

} // namespace noctra
