#pragma once

#include <optional>
#include <string_view>

namespace noctra {

struct Url;

/// What another program can ask of this one through a URL of the scheme `noctra`.
enum class AutomationCommand { on, off, toggle, show };

/// The command's word: "on", "off", "toggle", "show".
[[nodiscard]] std::string_view rawValue(AutomationCommand command);

/// The command whose word is exactly `rawValue`.
[[nodiscard]] std::optional<AutomationCommand> automationCommand(std::string_view rawValue);

/// The command that a text from outside asks for as a URL; nothing where it is no URL.
[[nodiscard]] std::optional<AutomationCommand> commandInUrl(std::string_view text);

/// The command that `url` asks for: its host, or without one the first component of its path, taken
/// without regard to case and to white space around it. Query and fragment do not count. Nothing
/// for another scheme or an unknown word.
[[nodiscard]] std::optional<AutomationCommand> automationCommand(const Url& url);

} // namespace noctra
