#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "foundation/Clock.h"
#include "foundation/Log.h"
#include "foundation/MainQueue.h"
#include "platform/EventMonitors.h"
#include "platform/linux/tray/RawPresses.h"

namespace noctra {

/// What is pressed in other programs, also while one of them has grabbed the pointer. Main thread.
///
/// Listens to the X server only while somebody monitors. Where that fails or breaks, one log line
/// says so, and tokens stay without effect.
class XInputEventMonitors : public EventMonitors {
public:
    struct Press {
        PixelPoint where; ///< of the pointer, when the press was heard of
        SteadyClock::TimePoint when;
        bool left = false; ///< else the right button
    };

    /// Whether a window of this program's was told of the press at this time, in ms by the X
    /// server's clock.
    using IsOwn = std::function<bool(xcb_timestamp_t)>;

    /// Begins nothing yet. `queue`, `clock` and `log` must outlive the object and all tokens.
    XInputEventMonitors(MainQueue& queue, const SteadyClock& clock, Log& log, IsOwn isOwn);
    XInputEventMonitors(const XInputEventMonitors&) = delete;
    XInputEventMonitors& operator=(const XInputEventMonitors&) = delete;
    ~XInputEventMonitors() override;

    /// Presses that a window of this program's was told of are not told here. Where they were does
    /// not count: raw presses do not say, and the pointer may have gone elsewhere before they are
    /// read. So a press is told only `windowsHeadStart` after it is heard of. `pressed` must not
    /// throw.
    [[nodiscard]] AnyCancellable addGlobalMonitor(std::function<void()> pressed) override;

    /// The last press that was told, there before it is told. Nothing from when somebody begins to
    /// monitor until the first press; so where a popover is monitored while it is open, this is the
    /// press that closed it.
    [[nodiscard]] const std::optional<Press>& lastPress() const;

    /// By then the windows know of it, too, also where the program had something else to do.
    static constexpr Seconds windowsHeadStart{0.03};

private:
    struct Shared;
    class Listening;
    [[nodiscard]] std::shared_ptr<Listening> listening();

    std::shared_ptr<Shared> shared_;
    std::weak_ptr<Listening> listening_;
};

} // namespace noctra
