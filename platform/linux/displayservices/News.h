#pragma once

#include <atomic>
#include <cstdint>

#include "platform/linux/displayservices/EventDescriptor.h"

namespace noctra::display_services {

/// What has happened, for the host to fetch: bits as in HostFunctions.h. Any thread.
class News {
public:
    /// Readable while there is news.
    [[nodiscard]] int descriptor() const { return posted_.number(); }
    void post(std::uint32_t bits) {
        bits_ |= bits;
        posted_.raise();
    }
    /// What has been posted since the last call.
    std::uint32_t take() {
        posted_.clear(); // first: what is posted meanwhile raises it again
        return bits_.exchange(0);
    }

private:
    EventDescriptor posted_;
    std::atomic<std::uint32_t> bits_ = 0;
};

} // namespace noctra::display_services
