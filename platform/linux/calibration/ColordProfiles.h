#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/linux/calibration/ProfileSource.h"

namespace noctra {

class BoundedSystemBus;

/// The profiles that colord, where it runs, has for the displays. It is never started.
///
/// Look-ups are made in passes over all displays, so that a colord that hangs costs a pass, not
/// every display, its budget. A bus that is missing, and one that comes back between two passes, is
/// dealt with. On any thread, one at a time.
class ColordProfiles : public ProfileSource {
public:
    ColordProfiles();
    ColordProfiles(const ColordProfiles&) = delete;
    ColordProfiles& operator=(const ColordProfiles&) = delete;
    ~ColordProfiles() override;

    void beginPass(std::chrono::milliseconds budget) override;
    [[nodiscard]] Found profileOf(const Output& output) override;

private:
    /// The absolute path of the default profile of the device that is the output `outputName`
    /// ("DP-1"). Empty when colord does not run, has no such device, has it switched off or without
    /// a profile, or does not make sense; and at once when the pass is over: its budget is spent,
    /// an answer did not come in time, or no pass has begun.
    [[nodiscard]] std::string defaultProfileFile(std::string_view outputName);
    [[nodiscard]] bool isRunning();

    std::unique_ptr<BoundedSystemBus> bus_;
    std::optional<bool> running_; // asked once a pass
};

} // namespace noctra
