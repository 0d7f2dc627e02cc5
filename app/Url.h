#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace noctra {

/// The parts of a URL that the program looks at. Host and components are percent-decoded, once;
/// they may hold any bytes then.
struct Url {
    std::string scheme; ///< as written
    std::string host;   ///< empty when there is none; without user information and port
    /// "/" first when the path starts with it, then each non-empty component.
    std::vector<std::string> pathComponents;
};

/// Longer texts are no URLs for this program: room for every sensible link (RFC 9110 asks
/// recipients for 8,000 octets), and a bound on what one line of the log can hold.
inline constexpr std::size_t longestUrl = 8192;

/// Splits `text` by the generic syntax of RFC 3986. Nothing where it is no URL by that, which has
/// neither spaces nor control characters nor anything beyond ASCII, or is longer than `longestUrl`.
[[nodiscard]] std::optional<Url> parseUrl(std::string_view text);

/// True when `text` starts like a URL: a scheme's characters and a colon.
[[nodiscard]] bool startsWithUrlScheme(std::string_view text);

} // namespace noctra
