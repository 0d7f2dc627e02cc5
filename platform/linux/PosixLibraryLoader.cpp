#include "platform/linux/PosixLibraryLoader.h"

#include <algorithm>
#include <utility>

#include <dlfcn.h>
#include <unistd.h>

namespace noctra {

PosixLibraryLoader::PosixLibraryLoader(std::vector<std::string> candidates,
                                       std::function<void(void*)> opened)
    : candidates_(std::move(candidates)), opened_(std::move(opened)) {}

std::string PosixLibraryLoader::displayServicesPath() const {
    const auto found =
        std::find_if(candidates_.begin(), candidates_.end(), [](const std::string& candidate) {
            return ::access(candidate.c_str(), R_OK) == 0;
        });
    return found != candidates_.end() ? *found : candidates_.front();
}

void* PosixLibraryLoader::open(const std::string& path, int flags) {
    void* library = ::dlopen(path.c_str(), flags);
    if (library != nullptr)
        opened_(library);
    return library;
}

void* PosixLibraryLoader::symbol(void* library, const char* name) {
    return ::dlsym(library, name);
}

} // namespace noctra
