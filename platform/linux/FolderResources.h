#pragma once

#include <filesystem>
#include <vector>

#include "platform/Resources.h"

namespace noctra {

/// Resources in folders, each with its files in the sub-folders "fonts" and "icons".
class FolderResources : public Resources {
public:
    /// `folders` need not exist; earlier ones go first.
    explicit FolderResources(std::vector<std::filesystem::path> folders);

    [[nodiscard]] std::optional<std::string> path(std::string_view name,
                                                  std::string_view extension) const override;

private:
    const std::vector<std::filesystem::path> folders_;
};

} // namespace noctra
