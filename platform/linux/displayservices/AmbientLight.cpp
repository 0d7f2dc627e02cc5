#include "platform/linux/displayservices/AmbientLight.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace noctra::display_services {

namespace {

void createMarker(const std::string& marker) {
    if (marker.empty())
        return;
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(marker).parent_path(), ignored);
    const int file = ::open(marker.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file >= 0)
        ::close(file);
}

} // namespace

AmbientLight::AmbientLight(std::string marker, std::unique_ptr<AmbientSetting> setting)
    : marker_(std::move(marker)), setting_(std::move(setting)) {}

bool AmbientLight::isOffThroughUs() const {
    return switchedOff_ || (!marker_.empty() && ::access(marker_.c_str(), F_OK) == 0);
}

void AmbientLight::switchOff() {
    if (setting_->read() != true)
        return;
    createMarker(marker_);
    switchedOff_ = setting_->write(false);
    if (!switchedOff_)
        ::unlink(marker_.c_str());
}

void AmbientLight::putBack() {
    if (!isOffThroughUs())
        return;
    const auto on = setting_->read();
    if (!on || (!*on && !setting_->write(true)))
        return;
    switchedOff_ = false;
    ::unlink(marker_.c_str());
}

} // namespace noctra::display_services
