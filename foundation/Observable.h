#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "foundation/AnyCancellable.h"
#include "foundation/MainQueue.h"

namespace noctra {

/// Whoever listens to one source, in the order in which they came, held weakly: each listener lives
/// as long as its token. Main thread.
///
/// Listeners may come and go while they are being visited: one that has gone is not visited any
/// more, one that has come is visited from the next time on.
template <typename Listener>
class Listeners {
public:
    std::shared_ptr<Listener> add(Listener listener) {
        if (visits_ == 0)
            std::erase_if(listeners_, [](const auto& weak) { return weak.expired(); });
        auto owned = std::make_shared<Listener>(std::move(listener));
        listeners_.push_back(owned);
        return owned;
    }

    template <typename Visit>
    void forEach(Visit visit) const {
        ++visits_;
        const std::size_t count = listeners_.size();
        for (std::size_t i = 0; i < count; ++i)
            if (const std::shared_ptr<Listener> listener = listeners_[i].lock())
                visit(listener);
        --visits_;
    }

private:
    std::vector<std::weak_ptr<Listener>> listeners_;
    mutable int visits_ = 0; ///< under way, one inside the other
};

/// An object whose published properties can be watched. Main thread.
///
/// One will-change signal goes out before any published property is assigned, also when the new
/// value equals the old one.
class ObservableObject {
public:
    ObservableObject() = default;
    ObservableObject(const ObservableObject&) = delete;
    ObservableObject& operator=(const ObservableObject&) = delete;

    /// Calls `listener` synchronously before each assignment, until the token is dropped.
    [[nodiscard]] AnyCancellable onWillChange(std::function<void()> listener) {
        return AnyCancellable(willChange_.add(std::move(listener)));
    }

protected:
    ~ObservableObject() = default;

private:
    template <typename>
    friend class Published;

    void announceChange() const {
        willChange_.forEach([](const auto& listener) { (*listener)(); });
    }

    Listeners<std::function<void()>> willChange_;
};

/// One published property of an ObservableObject. Main thread.
///
/// Assigning announces the change, stores the value, hands it to the subscribers and runs the
/// after-change action; all of it on every assignment, also when the value stays the same.
template <typename Value>
class Published {
public:
    using Action = std::function<void()>;
    using Accepts = std::function<bool(const Value&)>;

    /// `didChange` runs after each assignment. A value that `accepts` turns down is not assigned:
    /// nothing is announced and nothing changes.
    Published(ObservableObject& owner, Value initial, Action didChange = {}, Accepts accepts = {})
        : owner_(owner), value_(std::move(initial)), didChange_(std::move(didChange)),
          accepts_(std::move(accepts)) {}
    Published(const Published&) = delete;
    Published& operator=(const Published&) = delete;

    Published& operator=(Value value) {
        if (accepts_ && !accepts_(value))
            return *this;
        owner_.announceChange();
        value_ = std::move(value);
        subscribers_.forEach([this](const auto& subscriber) { deliver(subscriber); });
        if (didChange_)
            didChange_();
        return *this;
    }

    [[nodiscard]] const Value& get() const { return value_; }
    operator const Value&() const { return value_; } // NOLINT(google-explicit-constructor)

    /// Hands `receive` the current value once and then each newly assigned one, on `queue`, in
    /// order, until the token is dropped.
    [[nodiscard]] AnyCancellable subscribe(MainQueue& queue,
                                           std::function<void(const Value&)> receive) const {
        auto subscriber = subscribers_.add({&queue, std::move(receive)});
        deliver(subscriber);
        return AnyCancellable(std::move(subscriber));
    }

private:
    struct Subscriber {
        MainQueue* queue;
        std::function<void(const Value&)> receive;
    };

    void deliver(const std::shared_ptr<Subscriber>& to) const {
        to->queue->async([weak = std::weak_ptr<Subscriber>(to), value = value_] {
            if (const auto subscriber = weak.lock())
                subscriber->receive(value);
        });
    }

    ObservableObject& owner_;
    Value value_;
    Action didChange_;
    Accepts accepts_;
    mutable Listeners<Subscriber> subscribers_;
};

} // namespace noctra
