#include "platform/linux/RuntimeDirectory.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <sys/stat.h>
#include <unistd.h>

namespace noctra {

namespace {

std::string absoluteEnvironment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr && value[0] == '/' ? value : std::string();
}

/// Makes `path` a directory that nobody else can use; returns why it is not one.
std::string makePrivate(const std::string& path) {
    if (::mkdir(path.c_str(), 0700) != 0 && errno != EEXIST)
        return "cannot make " + path + ": " + std::strerror(errno);
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0)
        return "cannot use " + path + ": " + std::strerror(errno);
    if (!S_ISDIR(status.st_mode) || status.st_uid != ::geteuid())
        return path + " is not a directory of this user";
    return {};
}

} // namespace

RuntimeDirectory openRuntimeDirectory() {
    std::string parent = absoluteEnvironment("XDG_RUNTIME_DIR");
    RuntimeDirectory directory;
    if (parent.empty()) {
        directory.problem = "XDG_RUNTIME_DIR is not set";
        parent = absoluteEnvironment("XDG_CACHE_HOME");
        if (parent.empty()) {
            const std::string home = absoluteEnvironment("HOME");
            if (home.empty())
                return directory;
            parent = home + "/.cache";
        }
        ::mkdir(parent.c_str(), 0700);
    }
    const std::string path = parent + "/noctra";
    if (const std::string problem = makePrivate(path); !problem.empty()) {
        directory.problem = problem;
        return directory;
    }
    directory.path = path;
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
