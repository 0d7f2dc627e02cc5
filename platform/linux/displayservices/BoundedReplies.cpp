#include "platform/linux/displayservices/BoundedReplies.h"

#include <poll.h>
#include <xcb/xcbext.h>

namespace noctra::display_services {

using Clock = std::chrono::steady_clock;

BoundedReplies::BoundedReplies(xcb_connection_t* connection, std::chrono::milliseconds limit)
    : connection_(connection), deadline_(Clock::now() + limit) {}

void* BoundedReplies::wait(unsigned int sequence) {
    xcb_flush(connection_);
    for (;;) {
        void* reply = nullptr;
        xcb_generic_error_t* error = nullptr;
        if (xcb_poll_for_reply(connection_, sequence, &reply, &error) != 0) {
            std::free(error);
            return reply;
        }
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline_ - Clock::now()).count();
        if (ranOut_ || left <= 0) {
            ranOut_ = true;
            xcb_discard_reply(connection_, sequence);
            return nullptr;
        }
        pollfd polled{xcb_get_file_descriptor(connection_), POLLIN, 0};
        ::poll(&polled, 1, static_cast<int>(left));
    }
}

} // namespace noctra::display_services
