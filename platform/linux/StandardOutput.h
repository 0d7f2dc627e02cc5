#pragma once

#include <condition_variable>
#include <deque>
#include <string>
#include <thread>

#include "foundation/Clock.h"
#include "foundation/ThreadSafety.h"
#include "platform/LineOutput.h"

namespace noctra {

/// Lines to a file descriptor, by default the process's standard output, written by a thread of its
/// own: a reader that has stopped reading (a full pipe, a terminal behind a dead link) holds up
/// nobody else. Any thread.
///
/// The descriptor that it is given is duplicated: lines still go where it led when something else
/// is put in its place for a while.
///
/// While more than `maxWaiting` lines wait, new ones are dropped; where lines were dropped, a line
/// says how many.
class StandardOutput : public LineOutput {
public:
    static constexpr std::size_t maxWaiting = 1000;

    explicit StandardOutput(int descriptor = 1);
    StandardOutput(const StandardOutput&) = delete;
    StandardOutput& operator=(const StandardOutput&) = delete;
    /// Waits for the lines that wait to be written, for as long as that takes.
    ~StandardOutput() override;

    void writeLine(std::string_view line) override;

    /// Waits until everything is written, at most `patience`.
    void drain(Seconds patience);

private:
    void writeWaiting();

    const int descriptor_;
    Mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::string> waiting_ GUARDED_BY(mutex_);
    std::size_t dropped_ GUARDED_BY(mutex_) = 0;
    bool writing_ GUARDED_BY(mutex_) = false;
    bool ending_ GUARDED_BY(mutex_) = false;
    std::thread writer_{[this] {
        writeWaiting();
    }};
};

} // namespace noctra
