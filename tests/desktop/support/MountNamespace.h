#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace noctra::desktop {

/// A command that runs what is put behind it, in the same process, where `folder` stands at
/// `where`, a folder under /dev or /sys. Nobody else sees it there; also where / is no mount point,
/// as in a chroot.
[[nodiscard]] std::vector<std::string> withFolderAt(const std::filesystem::path& folder,
                                                    const std::string& where);

/// Whether this machine lets us do so; it takes root.
[[nodiscard]] bool canPutFoldersElsewhere();

} // namespace noctra::desktop
