#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <thread>

#include "platform/linux/displayservices/AmbientLight.h"
#include "platform/linux/displayservices/DisplayRegistry.h"
#include "platform/linux/displayservices/EventDescriptor.h"
#include "platform/linux/displayservices/MonitorControl.h"
#include "platform/linux/displayservices/PanelActuator.h"

namespace noctra::display_services {

/// The thread that talks to monitors, to the backlight and to the desktop's
/// settings. It sleeps while there is nothing to do.
class Worker {
public:
    struct Settings {
        std::string deviceFolder; ///< with the I2C buses; empty: external monitors are left alone
        std::string backlightFolder; ///< with the kernel's backlights
        std::string ambientMarker;   ///< as for AmbientLight
        std::string ownLevels;       ///< as for OwnLevels
    };

    /// Starts the thread; it takes no signals. Throws std::system_error where none is to be had.
    /// `wake` wakes it. What is passed by reference must outlive the object.
    Worker(DisplayRegistry& registry, EventDescriptor& wake, PanelActuator& panel,
           OwnLevels& ownLevels, Settings settings);
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;
    /// Waits for the end of what the thread is doing.
    ~Worker();

private:
    void run();
    void sleep(const std::optional<Job>& next);
    void perform(const Job& job);
    void lookForMonitors();
    void keepOwnLevels();

    DisplayRegistry& registry_;
    EventDescriptor& wake_;
    PanelActuator& panel_;
    OwnLevels& ownLevels_;
    const Settings settings_;
    // Used by the thread alone:
    std::unique_ptr<MonitorControl> monitors_; // null until an external display is asked about
    AmbientLight ambientLight_;

    std::atomic<bool> stopping_ = false;
    std::thread thread_;
};

} // namespace noctra::display_services
