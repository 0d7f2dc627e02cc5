#pragma once

#include <string>

#include "platform/GammaTables.h"
#include "tests/desktop/displayservices/Driver.h"
#include "tests/desktop/displayservices/Surroundings.h"
#include "tests/desktop/support/OutputPlugs.h"
#include "tests/desktop/support/TemporaryFolder.h"
#include "tests/desktop/support/XServer.h"
#include "tests/platform/linux/displayservices/stand-in/StandInMonitors.h"

namespace noctra::desktop {

/// External monitors on a server's first outputs, which can be talked to through a stand-in for
/// libddcutil: at 40 of 100, without a trouble, each with an EDID of its own. Without monitors the
/// outputs are dark.
class MonitorBench {
public:
    explicit MonitorBench(int count, const XServer& server = sharedServer());
    ~MonitorBench();
    MonitorBench(const MonitorBench&) = delete;
    MonitorBench& operator=(const MonitorBench&) = delete;

    [[nodiscard]] test::StandInMonitor& monitor(int number) const;
    [[nodiscard]] test::StandInMonitors& all() const { return *monitors_; }
    /// Gives a monitor another EDID, on its cable and on the output.
    void mark(int number, std::uint8_t mark) const;

    [[nodiscard]] DisplayId display(int number) const;

    /// For a process on this desk, which has an I2C bus. Its system bus is nowhere.
    [[nodiscard]] Driver::Surroundings surroundings() const;

private:
    const XServer& server_;
    TemporaryFolder folder_;
    test::StandInMonitors* monitors_;
};

} // namespace noctra::desktop
