#pragma once

#include <string>

namespace noctra {

/// The desktop's general clipboard, not the selection of the middle mouse button. Main thread.
///
/// Where the desktop has none, both operations do nothing.
class Clipboard {
public:
    virtual ~Clipboard() = default;

    virtual void clearContents() = 0;

    /// Puts `text` (UTF-8) there as plain text.
    virtual void setString(const std::string& text) = 0;
};

} // namespace noctra
