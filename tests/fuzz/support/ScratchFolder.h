#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "tests/fuzz/support/Input.h"

namespace noctra::fuzz {

/// A folder of the process's own, in memory where there is such a place, that goes with it.
class ScratchFolder {
public:
    ScratchFolder() {
        const char* const wanted = std::getenv("TMPDIR");
        const bool inMemory = wanted == nullptr && std::filesystem::exists("/dev/shm");
        path_ = (inMemory ? "/dev/shm" : std::filesystem::temp_directory_path().string()) +
                "/noctra-fuzz-XXXXXX";
        require(::mkdtemp(path_.data()) != nullptr, "there is a place for files");
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    [[nodiscard]] const std::string& path() const { return path_; }
    /// A new empty folder in it, under a name that was never used before.
    [[nodiscard]] std::string newFolder() {
        std::string folder = path_ + '/' + std::to_string(++folders_);
        std::filesystem::create_directory(folder);
        return folder;
    }

private:
    std::string path_;
    unsigned long folders_ = 0;
};

inline void writeFile(const std::string& path, std::string_view contents) {
    std::ofstream file(path, std::ios::binary);
    file.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    require(file.flush().good(), "the input fits into the scratch folder");
}

/// Empty where there is no such file.
inline std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace noctra::fuzz
