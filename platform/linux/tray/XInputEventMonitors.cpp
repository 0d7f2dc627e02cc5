#include "platform/linux/tray/XInputEventMonitors.h"

#include <string>
#include <utility>
#include <vector>

namespace noctra {

/// What outlives every connection.
struct XInputEventMonitors::Shared {
    MainQueue& queue;
    const SteadyClock& clock;
    Log& log;
    const IsOwn isOwn;
    std::optional<Press> lastPress = {};
    bool hasComplained = false;

    void complain(const std::string& reason) {
        if (!std::exchange(hasComplained, true))
            log.log("ERROR: Clicks in other programs cannot be noticed: " + reason);
    }
};

/// One connection, and those who are told of what comes over it. They own it.
class XInputEventMonitors::Listening : public std::enable_shared_from_this<Listening> {
public:
    Listening(std::shared_ptr<Shared> shared, RawPresses presses)
        : shared_(std::move(shared)), presses_(std::move(presses)) {}

    void begin() {
        const auto read = [weak = weak_from_this()] {
            if (const auto self = weak.lock())
                self->readPresses();
        };
        watch_ = shared_->queue.watch(presses_.descriptor(), read);
        shared_->queue.async(read); // for what came along with the answers to the first requests
    }

    [[nodiscard]] bool isBroken() const { return !watch_.isActive(); }

    [[nodiscard]] AnyCancellable add(std::function<void()> pressed) {
        auto monitor = std::make_shared<Monitor>(Monitor{shared_from_this(), std::move(pressed)});
        monitors_.emplace_back(monitor);
        return AnyCancellable(std::move(monitor));
    }

private:
    struct Monitor {
        std::shared_ptr<Listening> listening;
        std::function<void()> pressed;
    };

    /// Kept alive by the caller.
    void readPresses() {
        while (!monitors_.empty()) {
            const auto press = presses_.next();
            if (!press)
                break;
            const Press outside{press->where, shared_->clock.now(), press->left};
            shared_->queue.asyncAfter(windowsHeadStart,
                                      [weak = weak_from_this(), outside, time = press->time] {
                                          const auto self = weak.lock();
                                          if (self && !self->shared_->isOwn(time))
                                              self->tell(outside);
                                      });
        }
        if (presses_.isBroken()) {
            watch_.cancel();
            shared_->complain("the connection to the X server broke");
        }
    }

    void tell(const Press& press) {
        shared_->lastPress = press;
        const auto monitors = monitors_; // those who are told may add to them
        for (const auto& weak : monitors)
            if (const auto monitor = weak.lock())
                monitor->pressed();
        std::erase_if(monitors_, [](const auto& weak) { return weak.expired(); });
    }

    const std::shared_ptr<Shared> shared_;
    RawPresses presses_;
    AnyCancellable watch_; // goes before the connection
    std::vector<std::weak_ptr<Monitor>> monitors_;
};

XInputEventMonitors::XInputEventMonitors(MainQueue& queue, const SteadyClock& clock, Log& log,
                                         IsOwn isOwn)
    : shared_(std::make_shared<Shared>(Shared{queue, clock, log, std::move(isOwn)})) {}

XInputEventMonitors::~XInputEventMonitors() = default;

AnyCancellable XInputEventMonitors::addGlobalMonitor(std::function<void()> pressed) {
    const std::shared_ptr<Listening> connected = listening();
    return connected ? connected->add(std::move(pressed)) : AnyCancellable();
}

const std::optional<XInputEventMonitors::Press>& XInputEventMonitors::lastPress() const {
    return shared_->lastPress;
}

std::shared_ptr<XInputEventMonitors::Listening> XInputEventMonitors::listening() {
    if (auto listening = listening_.lock(); listening && !listening->isBroken())
        return listening;
    shared_->lastPress.reset();
    std::string reason;
    std::optional<RawPresses> presses = RawPresses::listen(reason);
    if (!presses) {
        shared_->complain(reason);
        return nullptr;
    }
    auto listening = std::make_shared<Listening>(shared_, std::move(*presses));
    listening->begin();
    listening_ = listening;
    return listening;
}

} // namespace noctra
