#pragma once

#include <chrono>

#include "platform/linux/XConnection.h"

namespace noctra::display_services {

/// Answers of an X server that may take `limit` all together. One thread.
class BoundedReplies {
public:
    BoundedReplies(xcb_connection_t* connection, std::chrono::milliseconds limit);

    /// The answer to a request; null for an error, on a broken connection, and when the time is up.
    template <typename Reply, typename Cookie>
    [[nodiscard]] XcbReply<Reply> get(Cookie cookie) {
        return XcbReply<Reply>(static_cast<Reply*>(wait(cookie.sequence)));
    }

    /// True when an answer has not come in time.
    [[nodiscard]] bool ranOut() const { return ranOut_; }

private:
    [[nodiscard]] void* wait(unsigned int sequence);

    xcb_connection_t* const connection_;
    const std::chrono::steady_clock::time_point deadline_;
    bool ranOut_ = false;
};

} // namespace noctra::display_services
