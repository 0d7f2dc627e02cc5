#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <vector>

namespace noctra::bench {

/// Times of one thing, in microseconds.
class Samples {
public:
    explicit Samples(std::size_t capacity) { microseconds_.reserve(capacity); }

    template <typename Work>
    void time(Work&& work) {
        const auto start = std::chrono::steady_clock::now();
        work();
        microseconds_.push_back(
            std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start)
                .count());
    }

    void add(double microseconds) { microseconds_.push_back(microseconds); }
    [[nodiscard]] std::size_t count() const { return microseconds_.size(); }

    /// The value below which `share` (0 to 1) of the samples lie.
    [[nodiscard]] double quantile(double share) {
        std::sort(microseconds_.begin(), microseconds_.end());
        return microseconds_[static_cast<std::size_t>(
            share * static_cast<double>(microseconds_.size() - 1))];
    }

private:
    std::vector<double> microseconds_;
};

} // namespace noctra::bench
