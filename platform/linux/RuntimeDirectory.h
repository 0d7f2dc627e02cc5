#pragma once

#include <string>

namespace noctra {

/// Where the program keeps what must survive its own death but not the session: the directory
/// "noctra" (mode 0700, the user's own) in $XDG_RUNTIME_DIR, or where that cannot be used in
/// $XDG_CACHE_HOME or ~/.cache. Makes it. On failure `path` is empty and `problem` says why;
/// `problem` is also set where the cache stands in.
struct RuntimeDirectory {
    std::string path;
    std::string problem;
};
[[nodiscard]] RuntimeDirectory openRuntimeDirectory();

/// Makes `path` a directory that nobody but this user can use. Returns an empty text, or why it is
/// not one: a link, somebody else's, or there is no making it. Any thread.
[[nodiscard]] std::string makePrivateDirectory(const std::string& path);

/// The file name of the record of tables for the X display `displayName`, e.g. "tables-:0".
[[nodiscard]] std::string tableRecordName(const std::string& displayName);

} // namespace noctra
