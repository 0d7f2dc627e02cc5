#include "platform/linux/autostart/EntryFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace noctra {

namespace {

std::string inWords(int error, const std::string& path) {
    return "POSIX error " + std::to_string(error) + " (" + std::strerror(error) + "): " + path;
}

std::string parentOf(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    return slash == 0 ? "/" : path.substr(0, slash);
}

/// Makes `folder` and those above it. Returns an error number, or 0.
int makeFolders(const std::string& folder) {
    if (::mkdir(folder.c_str(), 0700) == 0)
        return 0;
    if (errno == ENOENT && folder != "/") {
        if (const int error = makeFolders(parentOf(folder)); error != 0)
            return error;
        return ::mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST ? 0 : errno;
    }
    return errno == EEXIST ? 0 : errno;
}

int writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = ::write(descriptor, text.data(), text.size());
        if (count < 0 && errno != EINTR)
            return errno;
        if (count > 0)
            text.remove_prefix(static_cast<std::size_t>(count));
    }
    return 0;
}

/// Fills a new file and closes it. Returns an error number, or 0.
int fill(int descriptor, std::string_view text) {
    int error = writeAll(descriptor, text);
    if (error == 0 && (::fchmod(descriptor, 0644) != 0 || ::fsync(descriptor) != 0))
        error = errno;
    if (::close(descriptor) != 0 && error == 0)
        error = errno;
    return error;
}

} // namespace

EntryFile readEntry(const std::string& path) {
    // Non-blocking, so that a pipe somebody left there holds nobody up.
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) {
        const bool isNothing = errno == ENOENT || errno == ENOTDIR || errno == ELOOP;
        return {std::nullopt, isNothing ? "" : inWords(errno, path)};
    }
    EntryFile entry;
    std::string text(largestEntry + 1, '\0');
    std::size_t size = 0;
    int error = 0;
    struct stat status {};
    if (::fstat(descriptor, &status) != 0)
        error = errno;
    else if (!S_ISREG(status.st_mode))
        error = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    while (error == 0 && size < text.size()) {
        const ssize_t count = ::read(descriptor, text.data() + size, text.size() - size);
        if (count == 0)
            break;
        if (count > 0)
            size += static_cast<std::size_t>(count);
        else if (errno != EINTR)
            error = errno;
    }
    ::close(descriptor);
    if (error == 0 && size > largestEntry)
        error = EFBIG;
    if (error != 0)
        return {std::nullopt, inWords(error, path)};
    text.resize(size);
    return {std::move(text), {}};
}

std::string replaceEntry(const std::string& path, std::string_view text) {
    const std::string folder = parentOf(path);
    if (const int error = makeFolders(folder); error != 0)
        return inWords(error, folder);
    // A name without ".desktop", which no desktop takes for an entry.
    std::string temporary = folder + "/.noctra-XXXXXX";
    const int descriptor = ::mkostemp(temporary.data(), O_CLOEXEC);
    if (descriptor < 0)
        return inWords(errno, folder);
    int error = fill(descriptor, text);
    if (error == 0 && ::rename(temporary.c_str(), path.c_str()) != 0)
        error = errno;
    if (error == 0)
        return {};
    ::unlink(temporary.c_str());
    return inWords(error, path);
}

std::string removeEntry(const std::string& path) {
    if (::unlink(path.c_str()) == 0 || errno == ENOENT || errno == ENOTDIR)
        return {};
    return inWords(errno, path);
}

bool isUsableFolder(const std::string& folder) {
    struct stat status {};
    if (::stat(folder.c_str(), &status) == 0)
        return S_ISDIR(status.st_mode) && ::access(folder.c_str(), W_OK | X_OK) == 0;
    return errno == ENOENT && folder != "/" && isUsableFolder(parentOf(folder));
}

} // namespace noctra
