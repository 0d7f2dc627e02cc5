#pragma once

#include <iterator>
#include <random>

#include "tests/desktop/support/InputDevices.h"

namespace noctra::desktop {

/// Random numbers that are the same on every machine.
class SoakChance {
public:
    explicit SoakChance(unsigned seed) : engine_(seed) {}
    int below(int limit) { return static_cast<int>(engine_() % static_cast<unsigned>(limit)); }
    bool once(int in) { return below(in) == 0; }
    template <typename Values>
    auto of(const Values& values) {
        return *(std::begin(values) + below(static_cast<int>(std::size(values))));
    }
    Point in(const Box& box) { return {box.x + below(box.width), box.y + below(box.height)}; }

private:
    std::mt19937 engine_;
};

} // namespace noctra::desktop
