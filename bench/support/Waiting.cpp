#include "bench/support/Waiting.h"

#include <thread>

namespace noctra::desktop {

bool pollUntil(Duration limit, const std::function<bool()>& condition) {
    constexpr Duration pause{2};
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end)
            return condition();
        std::this_thread::sleep_for(pause);
    }
    return true;
}

} // namespace noctra::desktop
