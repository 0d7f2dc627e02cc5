#include "platform/linux/PosixScratchFiles.h"

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace noctra {

namespace {

std::string write(const std::string& path, int flags, std::string_view contents) {
    // Non-blocking, so that a pipe somebody left there holds nobody up.
    const int descriptor =
        ::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | flags, 0600);
    if (descriptor < 0)
        return std::strerror(errno);
    std::string error;
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_uid != ::geteuid() || status.st_nlink != 1)
        error = "not a plain file of this user";
    else if ((flags & O_CREAT) != 0 && ::ftruncate(descriptor, 0) != 0)
        error = std::strerror(errno);
    while (error.empty() && !contents.empty()) {
        const ssize_t written = ::write(descriptor, contents.data(), contents.size());
        if (written < 0)
            error = std::strerror(errno);
        else
            contents.remove_prefix(static_cast<std::size_t>(written));
    }
    if (::close(descriptor) != 0 && error.empty())
        error = std::strerror(errno);
    return error;
}

} // namespace

std::string PosixScratchFiles::create(const std::string& path, std::string_view contents) {
    return write(path, O_CREAT, contents);
}

std::string PosixScratchFiles::append(const std::string& path, std::string_view contents) {
    return write(path, O_APPEND, contents);
}

} // namespace noctra
