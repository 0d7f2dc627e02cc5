#pragma once

// What a panel asks of the simulated desktop.

#include <optional>
#include <string>
#include <vector>

#include "platform/Clipboard.h"
#include "platform/CursorStack.h"
#include "platform/MotionPreference.h"
#include "platform/NumberFormat.h"

namespace noctra {

class SimulatedCursorStack : public CursorStack {
public:
    int depth = 0;
    int pushes = 0; ///< ever
    int pops = 0;   ///< ever

    void pushPointingHand() override {
        ++pushes;
        ++depth;
    }
    void pop() override {
        ++pops;
        --depth;
    }
};

class SimulatedClipboard : public Clipboard {
public:
    std::optional<std::string> text;
    std::vector<std::string> calls;

    void clearContents() override {
        calls.emplace_back("clear");
        text.reset();
    }
    void setString(const std::string& newText) override {
        calls.emplace_back("set");
        text = newText;
    }
};

/// An English locale.
class SimulatedNumberFormat : public NumberFormat {
public:
    bool fails = false;

    [[nodiscard]] std::optional<std::string> decimal(long long number) const override {
        if (fails)
            return std::nullopt;
        std::string text = std::to_string(number);
        for (auto at = static_cast<long>(text.size()) - 3; at > (number < 0 ? 1 : 0); at -= 3)
            text.insert(static_cast<std::size_t>(at), ",");
        return text;
    }
};

class SimulatedMotionPreference : public MotionPreference {
public:
    bool reduced = false;

    [[nodiscard]] bool reducesMotion() const override { return reduced; }
};

} // namespace noctra
