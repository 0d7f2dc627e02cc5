#pragma once

#include <chrono>
#include <memory>
#include <mutex>
#include <span>

#include "platform/linux/displayservices/DisplayRegistry.h"
#include "platform/linux/displayservices/EventDescriptor.h"
#include "platform/linux/displayservices/News.h"
#include "platform/linux/displayservices/PanelActuator.h"
#include "platform/linux/displayservices/Worker.h"

namespace noctra::display_services {

/// What the exported functions do. Any thread; see DisplayServices.h and HostFunctions.h for what
/// they promise. Nothing is begun before the first of the five is called, unless an earlier run has
/// left levels to put back.
class DisplayServicesLibrary {
public:
    using Status = std::int32_t;

    explicit DisplayServicesLibrary(Worker::Settings settings);

    Status getBrightness(DisplayId display, float* brightness);
    Status setBrightness(DisplayId display, float brightness, bool smoothly);
    bool canChangeBrightness(DisplayId display);
    Status enableAmbientLightCompensation(DisplayId display, bool enable);

    void setDisplays(std::span<const AttachedDisplay> displays);
    [[nodiscard]] int newsDescriptor() const { return news_.descriptor(); }
    std::uint32_t takeNews() { return news_.take(); }
    bool finish(std::chrono::milliseconds limit);

private:
    void begin();

    const Worker::Settings settings_;
    News news_;
    EventDescriptor wake_;
    OwnLevels ownLevels_;
    DisplayRegistry registry_;
    PanelActuator panel_;
    std::once_flag begun_;
    std::unique_ptr<Worker> worker_; // null before the first call, and where no thread is to be had
};

} // namespace noctra::display_services
