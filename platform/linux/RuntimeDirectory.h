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

/// The file name of the record of tables for the X display `displayName`, e.g. "tables-:0".
[[nodiscard]] std::string tableRecordName(const std::string& displayName);

} // namespace noctra
