#pragma once

#include <optional>
#include <string>

namespace noctra {

/// Numbers as the user writes them. Main thread.
class NumberFormat {
public:
    virtual ~NumberFormat() = default;

    /// `number` in digits of the user's locale with its grouping (UTF-8); nothing where the locale
    /// has no way to write it.
    [[nodiscard]] virtual std::optional<std::string> decimal(long long number) const = 0;
};

} // namespace noctra
