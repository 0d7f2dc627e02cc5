#pragma once

#include <functional>
#include <string>

namespace noctra {

/// How URLs of the program's own scheme reach the running program. Main thread.
class UrlChannel {
public:
    struct Handlers {
        /// One URL, as its sender wrote it: any bytes, any length.
        std::function<void(const std::string& url)> open;
        /// The program was started again without a URL.
        std::function<void()> activate;
    };

    virtual ~UrlChannel() = default;

    /// From now on hands over what arrives, in order; what arrived earlier comes first, on a later
    /// turn of the main queue. Returns an empty text, or why nothing can arrive from other
    /// programs.
    virtual std::string setHandlers(Handlers handlers) = 0;

    /// Nothing is handed over any more.
    virtual void removeHandlers() = 0;
};

} // namespace noctra
