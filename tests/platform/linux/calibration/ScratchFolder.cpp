#include "tests/platform/linux/calibration/ScratchFolder.h"

#include <cstdlib>
#include <fstream>

namespace noctra::test {

const std::filesystem::path& scratchFolder() {
    static const std::filesystem::path folder = [] {
        std::string name =
            (std::filesystem::temp_directory_path() / "noctra-calibration-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr)
            std::abort();
        return name;
    }();
    return folder;
}

std::string writeScratchFile(const std::string& name, std::span<const std::byte> contents) {
    const std::string path = scratchFolder() / name;
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(contents.data()),
               static_cast<std::streamsize>(contents.size()));
    return path;
}

} // namespace noctra::test
