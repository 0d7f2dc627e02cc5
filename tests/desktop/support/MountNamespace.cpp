#include "tests/desktop/support/MountNamespace.h"

#include "tests/desktop/support/ChildProcess.h"
#include "tests/desktop/support/TemporaryFolder.h"

namespace noctra::desktop {

std::vector<std::string> withFolderAt(const std::filesystem::path& folder,
                                      const std::string& where) {
    // The mount point above it must not hand on what is mounted below to the machine's own.
    const std::string above = where.substr(0, where.find('/', 1));
    return {"/usr/bin/unshare",
            "-m",
            "--propagation",
            "unchanged",
            "/bin/sh",
            "-c",
            "PATH=/usr/sbin:/usr/bin:/sbin:/bin; mount --make-rprivate " + above +
                " && mount --bind '" + folder.string() + "' " + where + " && exec \"$@\"",
            "sh"};
}

bool canPutFoldersElsewhere() {
    const TemporaryFolder folder;
    for (const char* where : {"/dev", "/sys/class"}) {
        ChildProcess::Start start;
        start.arguments = withFolderAt(folder.path(), where);
        start.arguments.emplace_back("/bin/true");
        if (ChildProcess(start).waitForEnding(patience) != exited(0))
            return false;
    }
    return true;
}

} // namespace noctra::desktop
