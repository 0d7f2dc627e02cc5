#include "platform/linux/FolderResources.h"

#include <system_error>
#include <utility>

namespace noctra {

namespace fs = std::filesystem;

FolderResources::FolderResources(std::vector<fs::path> folders) : folders_(std::move(folders)) {}

std::optional<std::string> FolderResources::path(std::string_view name,
                                                 std::string_view extension) const {
    const std::string file = std::string(name) + '.' + std::string(extension);
    for (const fs::path& folder : folders_)
        for (const char* kind : {"fonts", "icons"}) {
            std::error_code error;
            const fs::path candidate = fs::absolute(folder / kind / file, error).lexically_normal();
            if (!error && fs::is_regular_file(candidate, error))
                return candidate.string();
        }
    return std::nullopt;
}

} // namespace noctra
