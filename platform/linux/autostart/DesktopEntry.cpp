#include "platform/linux/autostart/DesktopEntry.h"

#include <algorithm>

namespace noctra {

namespace {

constexpr std::string_view groupName = "[Desktop Entry]";

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view space = " \t\r\v\f";
    const std::size_t begin = text.find_first_not_of(space);
    if (begin == std::string_view::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(space) - begin + 1);
}

std::string lineFor(std::string_view key, std::string_view value) {
    return std::string(key).append("=").append(value);
}

} // namespace

DesktopEntry::DesktopEntry(std::string_view text) {
    for (;;) {
        const std::size_t end = text.find('\n');
        lines_.emplace_back(text.substr(0, end));
        if (end == std::string_view::npos)
            return;
        text.remove_prefix(end + 1);
    }
}

std::optional<std::string> DesktopEntry::value(std::string_view key) const {
    const auto lines = linesOf(key);
    if (lines.empty())
        return std::nullopt;
    const std::string_view line = lines_[lines.back()];
    return std::string(trimmed(line.substr(line.find('=') + 1)));
}

bool DesktopEntry::has(std::string_view key, std::string_view wanted) const {
    const auto found = value(key);
    return found && *found == wanted;
}

void DesktopEntry::set(std::string_view key, std::string_view value) {
    if (const auto lines = linesOf(key); !lines.empty()) {
        if (!has(key, value))
            lines_[lines.back()] = lineFor(key, value);
        return;
    }
    if (!mainGroup()) {
        if (lines_.back().empty())
            lines_.pop_back();
        lines_.emplace_back(groupName);
        lines_.emplace_back();
    }
    // The line goes before the empty lines at the group's end.
    const Group group = *mainGroup();
    std::size_t at = group.end;
    while (at > group.begin && trimmed(lines_[at - 1]).empty())
        --at;
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(at), lineFor(key, value));
    if (at + 1 == lines_.size())
        lines_.emplace_back(); // the file's last line gets its line feed
}

void DesktopEntry::remove(std::string_view key) {
    const auto lines = linesOf(key);
    for (auto line = lines.rbegin(); line != lines.rend(); ++line)
        lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(*line));
}

std::string DesktopEntry::text() const {
    std::string text = lines_.front();
    for (std::size_t i = 1; i < lines_.size(); ++i)
        text.append("\n").append(lines_[i]);
    return text;
}

std::optional<DesktopEntry::Group> DesktopEntry::mainGroup() const {
    const auto isName = [](const std::string& line) {
        return trimmed(line) == groupName;
    };
    const auto name = std::find_if(lines_.begin(), lines_.end(), isName);
    if (name == lines_.end())
        return std::nullopt;
    const auto end = std::find_if(name + 1, lines_.end(),
                                  [](const std::string& line) { return line.starts_with('['); });
    return Group{static_cast<std::size_t>(name + 1 - lines_.begin()),
                 static_cast<std::size_t>(end - lines_.begin())};
}

std::vector<std::size_t> DesktopEntry::linesOf(std::string_view key) const {
    std::vector<std::size_t> found;
    const Group group = mainGroup().value_or(Group{});
    for (std::size_t i = group.begin; i < group.end; ++i) {
        const std::string_view line = lines_[i];
        const std::size_t equals = line.find('=');
        if (equals != std::string_view::npos && trimmed(line.substr(0, equals)) == key)
            found.push_back(i);
    }
    return found;
}

} // namespace noctra
