#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace noctra {

/// The largest entry that is read: 64 KiB.
inline constexpr std::size_t largestEntry = 65536;

/// What is at an entry's place. Both empty: nothing, or a link to nothing.
struct EntryFile {
    std::optional<std::string> text;
    std::string error; ///< why what is there cannot be read; never a part of it
};

/// Reads a plain file, also through a symbolic link. Does not wait for anything but the disk.
[[nodiscard]] EntryFile readEntry(const std::string& path);

/// Puts a file with mode 0644 at `path`, at one go: whoever reads sees the old text or the new one,
/// and on failure the old one. A symbolic link at `path` is replaced, not followed. Makes missing
/// folders with mode 0700. Returns an empty text on success, else the error in words.
[[nodiscard]] std::string replaceEntry(const std::string& path, std::string_view text);

/// Removes what is at `path`; a symbolic link itself. Success where there is nothing.
[[nodiscard]] std::string removeEntry(const std::string& path);

/// Whether `folder` is a folder that can be written to, or can be made.
[[nodiscard]] bool isUsableFolder(const std::string& folder);

} // namespace noctra
