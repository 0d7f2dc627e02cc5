#pragma once

// The small services of the simulated desktop: each records what is asked of it and answers what a
// test has told it to.

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "foundation/Observable.h"
#include "platform/Application.h"
#include "platform/Backlight.h"
#include "platform/DisplayChanges.h"
#include "platform/LineOutput.h"
#include "platform/LoginItem.h"
#include "platform/OnlineDisplays.h"
#include "platform/ScratchFiles.h"
#include "platform/SystemInfo.h"
#include "platform/UrlChannel.h"

namespace noctra {

class SimulatedApplication : public Application {
public:
    bool isAgent = false;
    std::optional<int> terminatedWith;
    std::function<void()> willTerminate;

    int activations = 0;

    void becomeAgent() override { isAgent = true; }
    void activate() override { ++activations; }
    void terminate(int status) override { terminatedWith = status; }
    void onWillTerminate(std::function<void()> handler) override {
        willTerminate = std::move(handler);
    }
};

class SimulatedUrlChannel : public UrlChannel {
public:
    std::string missing; ///< why nothing can arrive; empty: all is well
    std::optional<Handlers> handlers;

    std::string setHandlers(Handlers newHandlers) override {
        handlers = std::move(newHandlers);
        return missing;
    }
    void removeHandlers() override { handlers.reset(); }
};

class SimulatedSystemInfo : public SystemInfo {
public:
    std::string version = "Version 14.2 (Build 23C64)";
    std::size_t screens = 0;

    [[nodiscard]] std::string systemName() const override { return "macOS"; }
    [[nodiscard]] std::string systemVersion() const override { return version; }
    [[nodiscard]] std::size_t screenCount() const override { return screens; }
};

class RecordedLines : public LineOutput {
public:
    std::vector<std::string> lines;

    void writeLine(std::string_view line) override { lines.emplace_back(line); }
};

class SimulatedScratchFiles : public ScratchFiles {
public:
    std::map<std::string, std::string> contents;
    std::string error; ///< what every operation answers, doing nothing

    std::string create(const std::string& path, std::string_view text) override {
        if (error.empty())
            contents[path] = text;
        return error;
    }
    std::string append(const std::string& path, std::string_view text) override {
        if (!contents.contains(path))
            return "no such file";
        contents[path] += text;
        return {};
    }
};

class SimulatedLoginItem : public LoginItem {
public:
    Status state = Status::notRegistered;
    std::string error; ///< what register and unregister answer
    std::vector<std::string> calls;

    [[nodiscard]] Status status() const override { return state; }
    std::string registerItem() override {
        calls.emplace_back("register");
        return error;
    }
    std::string unregisterItem() override {
        calls.emplace_back("unregister");
        return error;
    }
};

class SimulatedBacklight : public Backlight {
public:
    std::optional<float> value;

    [[nodiscard]] std::optional<float> level() override { return value; }
};

class SimulatedOnlineDisplays : public OnlineDisplays {
public:
    std::vector<DisplayId> ids;
    std::set<DisplayId> builtIn;
    std::int32_t status = 0; ///< what `list` answers

    std::int32_t list(std::span<DisplayId> to, std::uint32_t& count) const override {
        if (status != 0)
            return status;
        count = static_cast<std::uint32_t>(std::min(to.size(), ids.size()));
        std::copy_n(ids.begin(), count, to.begin());
        return 0;
    }
    [[nodiscard]] bool isBuiltIn(DisplayId display) const override {
        return builtIn.contains(display);
    }
};

class SimulatedDisplayChanges : public DisplayChanges {
public:
    void woke() const { tell(&Handlers::woke); }
    void screenParametersChanged() const { tell(&Handlers::screenParametersChanged); }
    void reconfigured(DisplayId display, DisplayChangeFlags flags) const {
        tell(&Handlers::reconfigured, display, flags);
    }
    void brightnessControlsChanged() const { tell(&Handlers::brightnessControlsChanged); }
    int subscriptions = 0; ///< ever made

    AnyCancellable subscribe(Handlers handlers) override {
        ++subscriptions;
        return AnyCancellable(subscribers_.add(std::move(handlers)));
    }

private:
    template <typename Handler, typename... Arguments>
    void tell(Handler handler, Arguments... arguments) const {
        subscribers_.forEach([&](const auto& subscriber) {
            if ((*subscriber).*handler)
                ((*subscriber).*handler)(arguments...);
        });
    }

    Listeners<Handlers> subscribers_;
};

} // namespace noctra
