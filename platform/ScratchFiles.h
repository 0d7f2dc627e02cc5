#pragma once

#include <string>
#include <string_view>

namespace noctra {

/// Files at fixed places that anybody may write to, such as /tmp. Main thread.
///
/// Links are not followed, and nothing but a plain file of the user's own is written. Each
/// operation returns an empty text on success, else the error in words.
class ScratchFiles {
public:
    virtual ~ScratchFiles() = default;

    /// Makes the file, or replaces what is in it.
    virtual std::string create(const std::string& path, std::string_view contents) = 0;
    /// Adds to a file that exists.
    virtual std::string append(const std::string& path, std::string_view contents) = 0;
};

} // namespace noctra
