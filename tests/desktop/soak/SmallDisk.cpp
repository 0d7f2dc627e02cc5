#include "tests/desktop/soak/SmallDisk.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sched.h>
#include <stdexcept>
#include <string>
#include <sys/mount.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "tests/desktop/support/Waiting.h"

namespace noctra::desktop {

namespace {

constexpr const char* filler = ".filler";

void check(bool succeeded, const std::string& what) {
    if (!succeeded)
        throw std::runtime_error(what + ": " + std::strerror(errno));
}

/// The disk itself, not the place where it is mounted: programs have mounts of their own. False
/// while somebody is writing a file there; one refusal spoils the descriptor.
bool remount(const std::filesystem::path& path, bool readOnly) {
    const int disk = fspick(AT_FDCWD, path.c_str(), FSPICK_CLOEXEC);
    check(disk >= 0 && fsconfig(disk, FSCONFIG_SET_FLAG, readOnly ? "ro" : "rw", nullptr, 0) == 0,
          "the disk cannot be set up anew");
    const bool done = fsconfig(disk, FSCONFIG_CMD_RECONFIGURE, nullptr, nullptr, 0) == 0;
    const bool refused = !done && errno == EBUSY;
    close(disk);
    check(done || refused, "the disk cannot be made read-only, or writable again");
    return done;
}

} // namespace

void enterOwnMounts() {
    constexpr const char* place = "/dev/shm"; // a mount point lies above it, also in a chroot
    check(unshare(CLONE_NEWNS) == 0, "no mount namespace");
    check(mount("none", "/dev", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0, "/dev stays shared");
    check(mount("tmpfs", place, "tmpfs", 0, "mode=1777") == 0, "no disk of our own");
    check(setenv("TMPDIR", place, 1) == 0, "TMPDIR");
}

SmallDisk::SmallDisk(std::filesystem::path folder) : path_(std::move(folder)) {
    const std::filesystem::path held = path_.string() + ".held";
    std::filesystem::rename(path_, held);
    std::filesystem::create_directory(path_);
    check(mount("tmpfs", path_.c_str(), "tmpfs", 0, "size=256k,nr_inodes=256,mode=700") == 0,
          "no small disk");
    std::filesystem::copy(held, path_, std::filesystem::copy_options::recursive);
    std::filesystem::remove_all(held);
}

SmallDisk::~SmallDisk() {
    umount2(path_.c_str(), MNT_DETACH);
}

void SmallDisk::fill() {
    if (readOnly_ || std::exchange(full_, true))
        return;
    const int file = open((path_ / filler).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    check(file >= 0, "the disk takes no filler");
    const std::vector<char> page(4096);
    while (write(file, page.data(), page.size()) > 0) {
    }
    close(file);
}

void SmallDisk::repair() {
    if (!setReadOnly(false))
        throw std::runtime_error("the disk stays read-only");
    if (std::exchange(full_, false))
        check(unlink((path_ / filler).c_str()) == 0, "the filler stays");
}

bool SmallDisk::setReadOnly(bool readOnly) {
    if (readOnly_ != readOnly &&
        pollUntil(Duration(1000), [&] { return remount(path_, readOnly); }))
        readOnly_ = readOnly;
    return readOnly_ == readOnly;
}

} // namespace noctra::desktop
