#pragma once

#include <string>

namespace noctra {

/// The dynamic loader, and where this desktop keeps its display-services library. Any thread.
class LibraryLoader {
public:
    virtual ~LibraryLoader() = default;

    /// The file of the display-services library; it need not exist.
    [[nodiscard]] virtual std::string displayServicesPath() const = 0;
    /// As dlopen; null when it cannot be opened. Libraries are never closed.
    virtual void* open(const std::string& path, int flags) = 0;
    /// As dlsym; null when the library has no such symbol.
    virtual void* symbol(void* library, const char* name) = 0;
};

} // namespace noctra
