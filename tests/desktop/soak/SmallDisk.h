#pragma once

#include <filesystem>

namespace noctra::desktop {

/// From now on this process and those that it starts have mounts of their own, and make their
/// temporary folders on a disk that goes with them. Throws std::runtime_error where this machine
/// does not let us; it takes root. Before any thread is started that needs the same view.
void enterOwnMounts();

/// A disk of a few hundred kilobytes that stands where a folder was, with what the folder held.
/// Needs enterOwnMounts(). Throws std::runtime_error where the system refuses.
class SmallDisk {
public:
    explicit SmallDisk(std::filesystem::path folder);
    ~SmallDisk();
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    /// Takes up the last byte.
    void fill();
    /// False where somebody goes on writing a file there: the disk is then as it was.
    [[nodiscard]] bool setReadOnly(bool readOnly);
    /// Undoes both.
    void repair();
    /// Whether programs can write.
    [[nodiscard]] bool isUsable() const { return !full_ && !readOnly_; }

private:
    std::filesystem::path path_;
    bool full_ = false;
    bool readOnly_ = false;
};

} // namespace noctra::desktop
