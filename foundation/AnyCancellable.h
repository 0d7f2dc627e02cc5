#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace noctra {

/// A token that keeps something going (a subscription, a timer, a watch) until it is dropped.
///
/// Move-only. Dropping, overwriting or cancelling the token ends what it stands for; nothing is
/// delivered afterwards, also not what was already under way to the main queue. Main thread.
class AnyCancellable {
public:
    AnyCancellable() = default;

    /// Owns `state`; whoever delivers holds it weakly.
    explicit AnyCancellable(std::shared_ptr<void> state) : state_(std::move(state)) {}

    /// Runs `onCancel` once, when the token is cancelled or dropped.
    static AnyCancellable calling(std::function<void()> onCancel);

    AnyCancellable(AnyCancellable&&) noexcept = default;
    AnyCancellable& operator=(AnyCancellable&&) noexcept = default;
    AnyCancellable(const AnyCancellable&) = delete;
    AnyCancellable& operator=(const AnyCancellable&) = delete;
    ~AnyCancellable() = default;

    void cancel() { state_.reset(); }
    [[nodiscard]] bool isActive() const { return state_ != nullptr; }

private:
    std::shared_ptr<void> state_;
};

} // namespace noctra
