#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/LibraryLoader.h"

namespace noctra {

/// The system's dynamic loader. Any thread.
class PosixLibraryLoader : public LibraryLoader {
public:
    /// The display-services library is the first of `candidates` that exists. `opened` is handed
    /// each library that has been opened, on the thread that asked for it.
    PosixLibraryLoader(std::vector<std::string> candidates, std::function<void(void*)> opened);

    [[nodiscard]] std::string displayServicesPath() const override;
    void* open(const std::string& path, int flags) override;
    void* symbol(void* library, const char* name) override;

private:
    const std::vector<std::string> candidates_;
    const std::function<void(void*)> opened_;
};

} // namespace noctra
