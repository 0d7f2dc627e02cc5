#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "platform/Process.h"

namespace noctra {

/// A process that records its own end and goes on.
class SimulatedProcess : public Process {
public:
    void setEnvironment(const std::string& name, const std::string& value) {
        environment_[name] = value;
    }
    /// Answers a signal as the real process would, on the calling thread; false when nothing has
    /// been installed to answer it (the process would have died).
    bool deliver(TerminationSignal signal) {
        if (handler_)
            std::exchange(handler_, nullptr)(signal);
        else
            return false;
        return true;
    }

    std::optional<int> endedWith;
    std::optional<Seconds> endsAfter;
    std::function<void()> lastResort; ///< what would run then

    [[nodiscard]] std::optional<std::string> environment(std::string_view name) const override {
        const auto found = environment_.find(std::string(name));
        return found == environment_.end() ? std::nullopt : std::optional(found->second);
    }
    void onTerminationSignal(std::function<void(TerminationSignal)> handler) override {
        handler_ = std::move(handler);
    }
    void endAfter(Seconds delay, int, std::function<void()> resort) override {
        if (endsAfter)
            return;
        endsAfter = delay;
        lastResort = std::move(resort);
    }
    void holdSignalThread(Seconds) override {
        if (whileHeld)
            whileHeld();
    }
    void endNow(int status) override { endedWith = status; }

    std::function<void()> whileHeld; ///< what the other threads do meanwhile

private:
    std::map<std::string, std::string> environment_;
    std::function<void(TerminationSignal)> handler_;
};

} // namespace noctra
