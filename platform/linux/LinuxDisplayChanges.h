#pragma once

#include <memory>
#include <vector>

#include "foundation/ThreadSafety.h"
#include "platform/DisplayChanges.h"

namespace noctra {

/// What happened to one display.
struct DisplayChange {
    DisplayId display = 0;
    DisplayChangeFlags flags = 0;

    friend bool operator==(const DisplayChange&, const DisplayChange&) = default;
};

/// Hands what the X server, the login manager and the display-services library say of changes to
/// whoever subscribed. Main thread, but for `subscribe`.
class LinuxDisplayChanges : public DisplayChanges {
public:
    [[nodiscard]] AnyCancellable subscribe(Handlers handlers) override;

    /// The X server's configuration is another one. X servers announce a change only once it is
    /// made; so its begin is reported for each of the displays in `changes` just before what
    /// happened to them. Then the screen parameters are reported as changed, also where `changes`
    /// is empty: a driver may have loaded tables of its own.
    void configurationChanged(const std::vector<DisplayChange>& changes) const;
    void woke() const;
    void brightnessControlsChanged() const;

private:
    [[nodiscard]] std::vector<std::shared_ptr<const Handlers>> subscribers() const;

    mutable Mutex mutex_;
    mutable std::vector<std::weak_ptr<const Handlers>> subscribers_ GUARDED_BY(mutex_);
};

} // namespace noctra
