#pragma once

#include <filesystem>
#include <string>

namespace noctra::desktop {

/// A new folder that only its owner may enter, removed with all that it holds.
class TemporaryFolder {
public:
    /// Throws std::runtime_error where no folder can be made.
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    [[nodiscard]] std::filesystem::path operator/(const std::string& name) const {
        return path_ / name;
    }

private:
    std::filesystem::path path_;
};

/// The bytes of a file; empty where there is none.
std::string readFile(const std::filesystem::path& file);
/// Replaces a file's bytes. Throws std::runtime_error where it cannot.
void writeFile(const std::filesystem::path& file, const std::string& bytes);

} // namespace noctra::desktop
