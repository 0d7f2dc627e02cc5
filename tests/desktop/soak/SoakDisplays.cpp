// Displays that come, go and change, and what their tables have to be.

#include <algorithm>
#include <array>

#include "tests/desktop/soak/Soak.h"

namespace noctra::desktop {

void Soak::plug(int output, bool in) {
    const TablesByCrtc before = probe().readLit();
    in ? plugs().plug(output) : plugs().unplug(output);
    const TablesByCrtc after = probe().readLit();
    for (const auto& [crtc, tables] : before)
        if (!after.contains(crtc))
            model_.leftWith[output] = model_.own[crtc];
    for (const auto& [crtc, tables] : after)
        if (!before.contains(crtc)) {
            auto& own = model_.own[crtc];
            const auto& brought = model_.leftWith[output];
            own.insert(own.end(), brought.begin(), brought.end());
            model_.recordDoubtful = model_.recordDoubtful || !runtime_->isUsable();
        }
    if (in)
        plugged_.insert(output);
    else
        plugged_.erase(output);
    if (output == 0) {
        model_.builtInLit = false;
        if (model_.backlightEvents > 0) // what was asked for may come too late
            model_.anyMode();
    }
    model_.displaysChange = true;
}

void Soak::plugOrUnplug() {
    const int output = chance.below(5);
    note(std::to_string(output));
    plug(output, !plugged_.contains(output));
}

void Soak::changeMode() {
    if (plugged_.empty())
        return note("(no display)");
    const int output =
        *std::next(plugged_.begin(), chance.below(static_cast<int>(plugged_.size())));
    setMode(output, chance.of(std::array{"640x480", "800x600", "1024x768"}));
}

void Soak::setMode(int output, const std::string& mode) {
    const std::string name = "DUMMY" + std::to_string(output);
    note(name + " " + mode);
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"--addmode", name, mode}, {"--output", name, "--mode", mode}}) {
        std::vector<std::string> command{"/usr/bin/xrandr"};
        command.insert(command.end(), arguments.begin(), arguments.end());
        EXPECT_EQ(desktop().startOther(command)->waitForEnding(), exited(0));
    }
    model_.displaysChange = true;
}

void Soak::wake() {
    logind_->prepareForSleep(true);
    logind_->prepareForSleep(false);
    model_.displaysChange = true;
}

/// A change of the displays is answered after a while, once for all that came meanwhile.
void Soak::awaitRefresh() {
    if (!model_.displaysChange)
        return;
    const std::size_t refreshes = program_->countLines("Refreshing displays");
    plugs().announceChange();
    EXPECT_TRUE(program_->waitForLines(refreshes + 1, "Refreshing displays"));
}

/// On displays only: what is on a CRTC without one is nobody's.
void Soak::writeForeignTables() {
    for (const auto& [crtc, tables] : probe().readLit()) {
        if (chance.once(2))
            continue;
        Tables foreign = tables;
        const int top = 30000 + chance.below(30000);
        for (auto* levels : {&foreign.red, &foreign.green, &foreign.blue})
            for (std::size_t i = 0; i < levels->size(); ++i)
                (*levels)[i] = static_cast<std::uint16_t>(top * static_cast<int>(i * i) / 65025);
        probe().write(crtc, foreign);
        model_.own[crtc].push_back(foreign);
        note(std::to_string(crtc));
    }
}

/// The tables that a CRTC may have for its own, as far as they fit what it carries.
std::vector<Tables> Soak::ownTablesThatFit(int crtc, const Tables& carried, bool filtered) const {
    std::vector<Tables> fitting;
    for (const Tables& own : model_.own.at(crtc)) {
        TablesByCrtc wanted{{crtc, own}};
        if (filtered)
            wanted = expectedTables(wanted, model_.warmth, model_.brightness);
        if (difference({{crtc, carried}}, wanted, filtered ? 1 : 0).empty() &&
            std::ranges::find(fitting, own) == fitting.end())
            fitting.push_back(own);
    }
    return fitting;
}

std::string Soak::tableTrouble(bool filtered) const {
    const TablesByCrtc lit = probe().readLit();
    std::string trouble;
    for (const auto& [crtc, tables] : probe().readAll()) {
        const bool dimmed = filtered && lit.contains(crtc);
        if (ownTablesThatFit(crtc, tables, dimmed).empty())
            trouble += "CRTC " + std::to_string(crtc) + (dimmed ? " (lit)" : "") + " ends at " +
                       std::to_string(tables.red.back()) + " " +
                       std::to_string(tables.green.back()) + " " +
                       std::to_string(tables.blue.back()) + ", own " +
                       std::to_string(model_.own.at(crtc).front().red.back()) + "...; ";
    }
    return trouble;
}

void Soak::keepWhatIsFound(bool filtered) {
    const TablesByCrtc lit = probe().readLit();
    for (const auto& [crtc, tables] : probe().readAll())
        if (auto fitting = ownTablesThatFit(crtc, tables, filtered && lit.contains(crtc));
            !fitting.empty())
            model_.own[crtc] = std::move(fitting);
}

void Soak::checkTables() {
    pollUntil(patience, [&] {
        followHands();
        return tableTrouble(*model_.enabled.begin()).empty();
    });
    EXPECT_EQ(tableTrouble(*model_.enabled.begin()), "");
    keepWhatIsFound(*model_.enabled.begin());
}

} // namespace noctra::desktop
