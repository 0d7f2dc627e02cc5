#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "bench/support/Waiting.h"

namespace noctra::desktop {

/// Collects the lines that arrive on a descriptor, on a thread of its own.
class LineReader {
public:
    /// Owns `descriptor` from now on.
    explicit LineReader(int descriptor);
    /// Stops reading and closes the descriptor.
    ~LineReader();
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;

    /// What has arrived so far; a last piece without a line feed counts once the writer has gone.
    [[nodiscard]] std::vector<std::string> lines() const;
    /// Waits until `condition` holds for the lines; asks again at each new one. Returns whether it
    /// held. Gives up early when the writer has gone.
    bool waitUntil(Duration limit,
                   const std::function<bool(const std::vector<std::string>&)>& condition) const;
    /// Waits until the writer has closed its end.
    bool waitForEnd(Duration limit) const;

private:
    void read();
    void take(const char* bytes, std::size_t count);

    int descriptor_;
    int stop_; ///< an event descriptor that ends the thread
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::vector<std::string> lines_;
    std::string unfinished_;
    bool ended_ = false;
    std::thread thread_;
};

} // namespace noctra::desktop
