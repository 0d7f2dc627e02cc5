#pragma once

namespace noctra::display_services {

/// A descriptor that is readable from `raise` to `clear`. Any thread.
class EventDescriptor {
public:
    EventDescriptor();
    EventDescriptor(const EventDescriptor&) = delete;
    EventDescriptor& operator=(const EventDescriptor&) = delete;
    ~EventDescriptor();

    /// -1 where the system had no descriptor left.
    [[nodiscard]] int number() const { return number_; }
    void raise();
    void clear();

private:
    const int number_;
};

} // namespace noctra::display_services
