#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/desktop/support/BusClient.h"
#include "tests/desktop/support/ChildProcess.h"
#include "tests/desktop/support/SystemBus.h"

namespace noctra::desktop {

/// logind, played by a program on a system bus, with one session that belongs to the tests
/// ("auto").
class MockLogind {
public:
    /// Throws std::runtime_error where it does not come up. Needs a running bus, and ends with it.
    explicit MockLogind(const SystemBus& bus);

    /// What logind says before (true) and after (false) the machine sleeps.
    void prepareForSleep(bool asleep) const;

    struct BrightnessCall {
        std::string subsystem;
        std::string name;
        unsigned int value = 0;

        friend bool operator==(const BrightnessCall&, const BrightnessCall&) = default;
    };
    /// The session's SetBrightness calls so far, oldest first, the refused ones too.
    [[nodiscard]] std::vector<BrightnessCall> brightnessCalls() const;
    /// From now on SetBrightness answers AccessDenied, or is obeyed again.
    void refuseBrightness(bool refused) const;

    /// From now on SetBrightness writes to `file`.
    void obeyBrightness(const std::string& file) const;

private:
    void answerSetBrightness(const std::string& code) const;

    std::unique_ptr<ChildProcess> process_;
    std::unique_ptr<BusClient> client_;
};

} // namespace noctra::desktop
