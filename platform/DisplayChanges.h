#pragma once

#include <cstdint>
#include <functional>

#include "foundation/AnyCancellable.h"
#include "platform/GammaTables.h"

namespace noctra {

/// What happens to a display in a reconfiguration: a set of bits, of which the program tests three.
using DisplayChangeFlags = std::uint32_t;
inline constexpr DisplayChangeFlags displayChangeBegins = 1;
inline constexpr DisplayChangeFlags displayAdded = 16;
inline constexpr DisplayChangeFlags displayRemoved = 32;

/// Says when the displays change and when the machine wakes.
class DisplayChanges {
public:
    struct Handlers {
        /// The machine woke from sleep. Main thread.
        std::function<void()> woke;
        /// The set of screens or their geometry changed. Main thread.
        std::function<void()> screenParametersChanged;
        /// Once with `displayChangeBegins` before a reconfiguration and once per affected display
        /// after it. Any thread.
        std::function<void(DisplayId, DisplayChangeFlags)> reconfigured;
        /// Other displays than before can have their hardware brightness set. Main thread.
        std::function<void()> brightnessControlsChanged;
    };

    virtual ~DisplayChanges() = default;

    /// Calls those of `handlers` that are set, until the token is dropped. Any thread; subscribers
    /// hear of a change in the order in which they came.
    [[nodiscard]] virtual AnyCancellable subscribe(Handlers handlers) = 0;
};

} // namespace noctra
