#pragma once

#include <functional>
#include <memory>

#include "foundation/MainQueue.h"
#include "panel/Binding.h"

namespace noctra {

/// Puts what a fader reports off to a later turn of the main queue, each report by itself and in
/// order, so that the panel's state is never written in the middle of a mouse handler. Main thread.
///
/// Noting a report allocates nothing unless reports pile up. What is pending when this goes is
/// delivered all the same.
class FaderCallbacks {
public:
    /// `onDragStateChanged` may be empty. `queue` must outlive this.
    FaderCallbacks(MainQueue& queue, Binding<double> value,
                   std::function<void(bool)> onDragStateChanged);
    FaderCallbacks(const FaderCallbacks&) = delete;
    FaderCallbacks& operator=(const FaderCallbacks&) = delete;
    ~FaderCallbacks();

    void noteValue(double value);
    void noteDragState(bool isDragging);
    /// The value as it is once everything has been delivered.
    [[nodiscard]] double latestValue() const;

private:
    struct Pending;

    MainQueue& queue_;
    std::shared_ptr<Pending> pending_; ///< a delivery that is under way holds it too
    WorkItem delivery_;
};

} // namespace noctra
