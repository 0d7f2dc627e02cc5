#include "panel/FaderCallbacks.h"

#include <cstddef>
#include <utility>
#include <variant>
#include <vector>

namespace noctra {

struct FaderCallbacks::Pending {
    Binding<double> value;
    std::function<void(bool)> onDragStateChanged;
    std::vector<std::variant<double, bool>> reports; ///< from `next` on not delivered yet
    std::size_t next = 0;

    void note(std::variant<double, bool> report) { reports.push_back(report); }

    /// Delivers what is there now. A report leaves the list before it is delivered: whoever hears
    /// of it may run the main loop, and with it this function.
    void deliver() {
        for (std::size_t left = reports.size() - next; left > 0 && next < reports.size(); --left) {
            const auto report = reports[next++];
            if (const auto* dragging = std::get_if<bool>(&report)) {
                if (onDragStateChanged)
                    onDragStateChanged(*dragging);
            } else {
                value.set(std::get<double>(report));
            }
        }
        if (next == reports.size()) {
            reports.clear();
            next = 0;
        }
    }
};

FaderCallbacks::FaderCallbacks(MainQueue& queue, Binding<double> value,
                               std::function<void(bool)> onDragStateChanged)
    : queue_(queue), pending_(std::make_shared<Pending>()),
      delivery_(queue, [pending = pending_] { pending->deliver(); }) {
    pending_->value = std::move(value);
    pending_->onDragStateChanged = std::move(onDragStateChanged);
    pending_->reports.reserve(64); // more steps than a pointer makes in one turn of the main loop
}

FaderCallbacks::~FaderCallbacks() {
    if (delivery_.isPending())
        queue_.async([pending = pending_] { pending->deliver(); });
}

void FaderCallbacks::noteValue(double value) {
    pending_->note(value);
    if (!delivery_.isPending())
        delivery_.schedule(Seconds(0.0));
}

double FaderCallbacks::latestValue() const {
    for (std::size_t i = pending_->reports.size(); i-- > pending_->next;)
        if (const auto* value = std::get_if<double>(&pending_->reports[i]))
            return *value;
    return pending_->value.get();
}

void FaderCallbacks::noteDragState(bool isDragging) {
    pending_->note(isDragging);
    if (!delivery_.isPending())
        delivery_.schedule(Seconds(0.0));
}

} // namespace noctra
