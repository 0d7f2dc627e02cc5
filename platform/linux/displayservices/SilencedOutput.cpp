#include "platform/linux/displayservices/SilencedOutput.h"

#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace noctra::display_services {

SilencedOutput::SilencedOutput() {
    std::fflush(stdout);
    kept_ = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere < 0 || nowhere == STDOUT_FILENO)
        return;
    ::dup2(nowhere, STDOUT_FILENO);
    ::close(nowhere);
}

SilencedOutput::~SilencedOutput() {
    std::fflush(stdout);
    if (kept_ < 0) {
        ::close(STDOUT_FILENO);
        return;
    }
    ::dup2(kept_, STDOUT_FILENO);
    ::close(kept_);
}

} // namespace noctra::display_services
