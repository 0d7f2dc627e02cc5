#include "platform/linux/displayservices/BacklightWriter.h"

#include <fcntl.h>
#include <unistd.h>

namespace noctra::display_services {

namespace {

bool writeFile(const BacklightDevice& device, unsigned int value) {
    const std::string path = device.folder + "/brightness";
    const int file = ::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_TRUNC);
    if (file < 0)
        return false;
    const std::string text = std::to_string(value);
    const ssize_t count = ::write(file, text.data(), text.size());
    ::close(file);
    return count == static_cast<ssize_t>(text.size());
}

} // namespace

bool BacklightWriter::write(const BacklightDevice& device, unsigned int value,
                            std::chrono::milliseconds limit) {
    if (fileFirst_ && writeFile(device, value))
        return true;
    fileFirst_ = false;
    if (writeThroughLogind(device, value, limit))
        return true;
    fileFirst_ = writeFile(device, value);
    return fileFirst_;
}

bool BacklightWriter::writeThroughLogind(const BacklightDevice& device, unsigned int value,
                                         std::chrono::milliseconds limit) {
    const BoundedSystemBus::Method setBrightness{
        "org.freedesktop.login1", QStringLiteral("/org/freedesktop/login1/session/auto"),
        "org.freedesktop.login1.Session", "SetBrightness", ""};
    bus_.beginPass(limit);
    return bus_
        .call(setBrightness,
              {QStringLiteral("backlight"), QString::fromStdString(device.name), value})
        .has_value();
}

} // namespace noctra::display_services
