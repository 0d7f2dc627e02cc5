#pragma once

#include <optional>

namespace noctra {

/// A spring by how it feels: `response` is the period of its undamped swing in seconds,
/// `dampingFraction` its damping as a part of what makes it stop swinging (1).
struct SpringSpec {
    double response = 0.0;
    double dampingFraction = 1.0;

    friend constexpr bool operator==(const SpringSpec&, const SpringSpec&) = default;
};

/// Notes how what is changed in the course of an action is to move. Main thread.
class AnimationTransaction {
public:
    /// Runs `action`; until `take`, changes move with `spring`.
    template <typename Action>
    void with(const SpringSpec& spring, Action action) {
        spring_ = spring;
        action();
    }

    /// The spring of the last action since the last call; nothing: changes show at once.
    [[nodiscard]] std::optional<SpringSpec> take() {
        const std::optional<SpringSpec> taken = spring_;
        spring_.reset();
        return taken;
    }

private:
    std::optional<SpringSpec> spring_;
};

} // namespace noctra
