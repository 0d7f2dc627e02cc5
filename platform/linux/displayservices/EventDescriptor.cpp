#include "platform/linux/displayservices/EventDescriptor.h"

#include <sys/eventfd.h>
#include <unistd.h>

namespace noctra::display_services {

EventDescriptor::EventDescriptor() : number_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

EventDescriptor::~EventDescriptor() {
    if (number_ >= 0)
        ::close(number_);
}

void EventDescriptor::raise() {
    ::eventfd_write(number_, 1);
}

void EventDescriptor::clear() {
    eventfd_t count = 0;
    ::eventfd_read(number_, &count);
}

} // namespace noctra::display_services
