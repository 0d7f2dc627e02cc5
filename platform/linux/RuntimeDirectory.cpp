#include "platform/linux/RuntimeDirectory.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace noctra {

namespace {

std::string absoluteEnvironment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr && value[0] == '/' ? value : std::string();
}

} // namespace

std::string makePrivateDirectory(const std::string& path) {
    if (::mkdir(path.c_str(), 0700) != 0 && errno != EEXIST)
        return "cannot make " + path + ": " + std::strerror(errno);
    const int folder = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW);
    if (folder < 0)
        return "cannot use " + path + ": " + std::strerror(errno);
    struct stat status {};
    const bool isOurs = ::fstat(folder, &status) == 0 && status.st_uid == ::geteuid();
    // A directory of this user's that others can read is closed to them.
    const bool isPrivate = isOurs && ((status.st_mode & 077) == 0 || ::fchmod(folder, 0700) == 0);
    ::close(folder);
    if (!isPrivate)
        return path + " is not a private directory of this user";
    return {};
}

RuntimeDirectory openRuntimeDirectory() {
    RuntimeDirectory directory;
    const std::string runtime = absoluteEnvironment("XDG_RUNTIME_DIR");
    if (runtime.empty())
        directory.problem = "XDG_RUNTIME_DIR is not set";
    else
        directory.problem = makePrivateDirectory(runtime + "/noctra");
    if (directory.problem.empty()) {
        directory.path = runtime + "/noctra";
        return directory;
    }

    std::string cache = absoluteEnvironment("XDG_CACHE_HOME");
    if (cache.empty())
        if (const std::string home = absoluteEnvironment("HOME"); !home.empty())
            cache = home + "/.cache";
    if (cache.empty())
        return directory;
    ::mkdir(cache.c_str(), 0700); // where this fails, so does the next, which says why
    if (const std::string problem = makePrivateDirectory(cache + "/noctra"); problem.empty())
        directory.path = cache + "/noctra";
    else
        directory.problem += "; " + problem;
    return directory;
}

std::string tableRecordName(const std::string& displayName) {
    // The screen's number is not part of what makes a display: ":0" and ":0.0" are the same server.
    std::string server = displayName;
    const auto colon = server.rfind(':');
    if (colon != std::string::npos)
        if (const auto dot = server.find('.', colon); dot != std::string::npos)
            server.resize(dot);
    for (char& c : server)
        if (c == '/')
            c = '_';
    return "tables-" + server;
}

} // namespace noctra
