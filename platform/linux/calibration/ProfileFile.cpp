#include "platform/linux/calibration/ProfileFile.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace noctra {

namespace {

IccProfile readAll(int descriptor) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size <= 0 ||
        static_cast<std::size_t>(status.st_size) > largestIccProfile)
        return {};
    IccProfile profile(static_cast<std::size_t>(status.st_size));
    std::size_t done = 0;
    while (done < profile.size()) {
        const ssize_t count = ::read(descriptor, profile.data() + done, profile.size() - done);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return {}; // an error, or the file was cut short meanwhile
        done += static_cast<std::size_t>(count);
    }
    return profile;
}

} // namespace

IccProfile readProfileFile(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0)
        return {};
    IccProfile profile = readAll(descriptor);
    ::close(descriptor);
    return profile;
}

} // namespace noctra
