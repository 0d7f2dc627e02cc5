#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string>
#include <string_view>

namespace noctra::fuzz {

/// Ends the process with `rule` where it does not hold, which is a finding.
inline void require(bool holds, const char* rule) {
    if (holds)
        return;
    std::fprintf(stderr, "A rule is broken: %s\n", rule);
    std::abort();
}

/// A target's input, taken from its front. Once it has run out, everything is 0 and empty.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : bytes_(data, size) {}

    [[nodiscard]] bool empty() const { return bytes_.empty(); }

    template <typename Number>
    Number number() {
        Number value{};
        const auto bytes = take(sizeof value);
        if (!bytes.empty())
            std::memcpy(&value, bytes.data(), bytes.size());
        return value;
    }
    /// `size` bytes, or as many as there are.
    std::span<const std::uint8_t> take(std::size_t size) {
        const auto taken = bytes_.first(std::min(size, bytes_.size()));
        bytes_ = bytes_.subspan(taken.size());
        return taken;
    }
    std::span<const std::uint8_t> rest() { return take(bytes_.size()); }
    /// Up to `end`, which is taken too, or to the end of the input.
    std::string textUpTo(char end) {
        const auto all = textIn(bytes_);
        const auto text = all.substr(0, all.find(end));
        take(std::min(text.size() + 1, all.size()));
        return std::string(text);
    }

    static std::string_view textIn(std::span<const std::uint8_t> bytes) {
        return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
    }

private:
    std::span<const std::uint8_t> bytes_;
};

} // namespace noctra::fuzz
