#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace noctra {

class BoundedSystemBus;

/// Which profiles colord, where it runs, has for the displays. It is never started.
///
/// Look-ups are made in passes over all displays, so that a colord that hangs costs a pass, not
/// every display, its budget. A bus that is missing, and one that comes back between two passes, is
/// dealt with. On any thread, one at a time.
class ColordProfiles {
public:
    static constexpr std::chrono::milliseconds defaultBudget{400};

    ColordProfiles();
    ColordProfiles(const ColordProfiles&) = delete;
    ColordProfiles& operator=(const ColordProfiles&) = delete;
    ~ColordProfiles();

    /// Starts a pass whose look-ups together may wait for `budget`.
    void beginPass(std::chrono::milliseconds budget = defaultBudget);

    /// The absolute path of the default profile of the device that is the output `outputName`
    /// ("DP-1"). Empty when colord does not run, has no such device, has it switched off or without
    /// a profile, or does not make sense; and at once when the pass is over: its budget is spent,
    /// an answer did not come in time, or no pass has begun.
    [[nodiscard]] std::string defaultProfileFile(std::string_view outputName);

private:
    [[nodiscard]] bool isRunning();

    std::unique_ptr<BoundedSystemBus> bus_;
    std::optional<bool> running_; // asked once a pass
};

} // namespace noctra
