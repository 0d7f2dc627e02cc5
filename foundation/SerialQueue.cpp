#include "foundation/SerialQueue.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace noctra {

SerialQueue::SerialQueue(std::string label) : label_(std::move(label)) {}

SerialQueue::~SerialQueue() {
    {
        const MutexLock lock(mutex_);
        while (nowServing_ != nextTurn_)
            mutex_.wait(turnEnded_);
        ending_ = true;
    }
    workPending_.notify_one();
    worker_.join();
}

void SerialQueue::sync(FunctionRef<void()> work) {
    const MutexLock lock(mutex_);
    if (runner_ == std::this_thread::get_id()) {
        std::fprintf(stderr,
                     "noctra: programming error: sync on queue %s from inside its own work\n",
                     label_.c_str());
        std::abort();
    }
    const std::uint64_t turn = nextTurn_++;
    while (nowServing_ != turn)
        mutex_.wait(turnEnded_);
    runTurn(work);
}

void SerialQueue::async(std::function<void()> work) {
    const MutexLock lock(mutex_);
    pending_.push_back({nextTurn_++, std::move(work)});
    if (isWorkersTurn())
        workPending_.notify_one();
}

void SerialQueue::runTurn(FunctionRef<void()> work) {
    runner_ = std::this_thread::get_id();
    mutex_.unlock();
    work();
    mutex_.lock();
    runner_ = {};
    ++nowServing_;
    if (isWorkersTurn())
        workPending_.notify_one();
    else
        turnEnded_.notify_all();
}

bool SerialQueue::isWorkersTurn() const {
    return !pending_.empty() && pending_.front().turn == nowServing_;
}

void SerialQueue::workerLoop() {
    const MutexLock lock(mutex_);
    for (;;) {
        while (!ending_ && !isWorkersTurn())
            mutex_.wait(workPending_);
        if (!isWorkersTurn())
            return;
        {
            const std::function<void()> work = std::move(pending_.front().work);
            pending_.pop_front();
            runTurn(work);
        }
    }
}

} // namespace noctra
