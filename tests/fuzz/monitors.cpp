// What monitors and the X server say: which displays are attached with which EDID, which monitors
// answer, and the brightness that they claim to have. Any monitor may say anything at any time.

#include <algorithm>
#include <map>
#include <set>
#include <vector>

#include "platform/linux/displayservices/DisplayList.h"
#include "tests/fuzz/support/Input.h"

using namespace noctra;
using namespace noctra::display_services;
using fuzz::require;

namespace {

class Run {
public:
    explicit Run(fuzz::Input input) : input_(input) {}

    void go() {
        while (!input_.empty()) {
            step(input_.number<std::uint8_t>() % 9);
            checkList();
        }
    }

private:
    void step(int kind) {
        if (kind == 0)
            displays_.replace(outputs(), now_);
        else if (kind == 1)
            assign();
        else if (kind == 2)
            now_ += std::chrono::milliseconds(input_.number<std::uint16_t>());
        else if (kind == 3)
            displays_.assignNone();
        else if (auto& entries = displays_.entries(); !entries.empty())
            talk(kind, entries[input_.number<std::uint8_t>() % entries.size()]);
    }

    std::optional<Edid> edid() {
        const auto kind = input_.number<std::uint8_t>();
        Edid edid{};
        if (kind == 0)
            return std::nullopt;
        if (kind < 8)
            edid.fill(kind);
        else
            std::ranges::copy(input_.take(8), edid.begin());
        return edid;
    }

    std::vector<Output> outputs() {
        std::vector<Output> outputs;
        std::set<DisplayId> ids;
        for (int left = input_.number<std::uint8_t>() % 6; left > 0; --left) {
            const auto what = input_.number<std::uint8_t>();
            if (ids.insert(what / 2 % 8).second) // the server names each only once
                outputs.push_back({what / 2U % 8U, what % 2 == 1, edid()});
        }
        return outputs;
    }

    void assign() {
        monitors_.clear();
        for (int left = input_.number<std::uint8_t>() % 6; left > 0; --left)
            monitors_.push_back(edid().value_or(Edid{}));
        displays_.assign(monitors_, now_);
    }

    void talk(int kind, DisplayEntry& entry) {
        MonitorBrightness& brightness = entry.brightness;
        const auto value = input_.number<std::uint16_t>();
        entry.asked = true;
        if (kind == 4)
            brightness.request(static_cast<float>(value) / 65535.0F, now_);
        else if (kind == 5)
            brightness.expectQuestion(now_);
        else if (kind == 6)
            brightness.forgive();
        if (const auto level = brightness.brightness(now_))
            require(*level >= 0.0F && *level <= 1.0F, "a brightness is in range");
        if (kind < 7)
            return;
        const auto task = brightness.plan(now_, kind == 8 && value % 2 == 1);
        if (!task)
            return;
        now_ = std::max(now_, task->due);
        carryOut(*task, entry, value);
    }

    void carryOut(const MonitorBrightness::Task& task, DisplayEntry& entry, std::uint16_t value) {
        MonitorBrightness& brightness = entry.brightness;
        std::uint16_t& largest = largest_[entry.output.id];
        if (task.step == MonitorBrightness::Step::write) {
            require(task.raw <= largest, "nothing beyond a monitor's maximum is written");
            brightness.writeDone(task.raw, value % 4 != 0, now_);
            return;
        }
        const auto maximum = input_.number<std::uint16_t>();
        if (value % 8 == 7) {
            brightness.readDone(std::nullopt, now_);
            return;
        }
        largest = maximum != 0 ? maximum : largest;
        brightness.readDone(MonitorValue{value, maximum}, now_);
    }

    void checkList() {
        std::set<DisplayId> ids;
        std::set<std::size_t> taken;
        for (DisplayEntry& entry : displays_.entries()) {
            require(ids.insert(entry.output.id).second, "a display is there once");
            require(displays_.find(entry.output.id) == &entry, "a display is found");
            if (!entry.monitor)
                continue;
            require(!entry.output.builtIn, "a panel is no monitor");
            require(taken.insert(*entry.monitor).second, "a monitor belongs to one display");
            require(*entry.monitor < monitors_.size(), "a monitor is in the latest list");
            require(entry.output.edid == monitors_[*entry.monitor], "a monitor's EDID is its own");
        }
        static_cast<void>(displays_.nextLook(false));
        static_cast<void>(displays_.nextLook(true));
    }

    fuzz::Input input_;
    DisplayList displays_;
    std::vector<Edid> monitors_;
    TimePoint now_{std::chrono::hours(1)};
    std::map<DisplayId, std::uint16_t> largest_; ///< maximum that a monitor has claimed last
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Run(fuzz::Input(data, size)).go();
    return 0;
}
