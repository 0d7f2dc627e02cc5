#include "foundation/SerialQueue.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace noctra {

SerialQueue::SerialQueue(std::string label) : label_(std::move(label)) {}

SerialQueue::~SerialQueue() {
    {
        std::unique_lock lock(mutex_);
        turnEnded_.wait(lock, [this] { return nowServing_ == nextTurn_; });
        ending_ = true;
    }
    workPending_.notify_one();
    worker_.join();
}

void SerialQueue::sync(FunctionRef<void()> work) {
    std::unique_lock lock(mutex_);
    if (runner_ == std::this_thread::get_id()) {
        std::fprintf(stderr,
                     "noctra: programming error: sync on queue %s from inside its own work\n",
                     label_.c_str());
        std::abort();
    }
    const std::uint64_t turn = nextTurn_++;
    turnEnded_.wait(lock, [&] { return nowServing_ == turn; });
    runTurn(lock, work);
}

void SerialQueue::async(std::function<void()> work) {
    const std::unique_lock lock(mutex_);
    pending_.push_back({nextTurn_++, std::move(work)});
    if (isWorkersTurn())
        workPending_.notify_one();
}

void SerialQueue::runTurn(std::unique_lock<std::mutex>& lock, FunctionRef<void()> work) {
    runner_ = std::this_thread::get_id();
    lock.unlock();
    work();
    lock.lock();
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
    std::unique_lock lock(mutex_);
    for (;;) {
        workPending_.wait(lock, [this] { return ending_ || isWorkersTurn(); });
        if (!isWorkersTurn())
            return;
        {
            const std::function<void()> work = std::move(pending_.front().work);
            pending_.pop_front();
            runTurn(lock, work);
        }
    }
}

} // namespace noctra
