#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <system_error>

namespace noctra::test {

/// A new folder that only its owner may enter, removed with all that it holds.
class TemporaryFolder {
public:
    /// Throws std::runtime_error where no folder can be made.
    TemporaryFolder() {
        if (::mkdtemp(name_.data()) == nullptr)
            throw std::runtime_error("no temporary folder can be made");
        path_ = name_;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    [[nodiscard]] std::filesystem::path operator/(const std::string& name) const {
        return path_ / name;
    }

private:
    std::string name_ = std::filesystem::temp_directory_path() / "noctra-test-XXXXXX";
    std::filesystem::path path_;
};

/// The bytes of a file; empty where there is none.
inline std::string readFile(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// Replaces a file's bytes. Throws std::runtime_error where it cannot.
inline void writeFile(const std::filesystem::path& file, const std::string& bytes) {
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream << bytes;
    stream.close();
    if (!stream)
        throw std::runtime_error("cannot write " + file.string());
}

} // namespace noctra::test
