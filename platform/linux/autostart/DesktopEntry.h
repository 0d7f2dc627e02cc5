#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace noctra {

/// The text of a desktop entry, in which single keys of its main group can be read and changed.
/// All that is not changed stays as it was, to the byte.
class DesktopEntry {
public:
    explicit DesktopEntry(std::string_view text);

    /// The value as written, without the white space around it; nothing without the key. Where a
    /// key is there twice the last counts.
    [[nodiscard]] std::optional<std::string> value(std::string_view key) const;
    [[nodiscard]] bool has(std::string_view key, std::string_view value) const;

    /// `value` as it is to be written, i.e. escaped, on one line.
    void set(std::string_view key, std::string_view value);
    void remove(std::string_view key);

    [[nodiscard]] std::string text() const;

private:
    struct Group {
        std::size_t begin = 0; ///< its first line after its name
        std::size_t end = 0;
    };
    [[nodiscard]] std::optional<Group> mainGroup() const;
    /// The lines that give `key` a value.
    [[nodiscard]] std::vector<std::size_t> linesOf(std::string_view key) const;

    std::vector<std::string> lines_; ///< without the line feeds between them
};

} // namespace noctra
