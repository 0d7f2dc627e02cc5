#include "foundation/Numbers.h"

#include <array>
#include <charconv>
#include <cmath>

namespace noctra {

namespace {

template <typename Number>
std::string shortest(Number value) {
    // The longest fixed form is that of the smallest subnormal double: "-0." and 1074 digits.
    std::array<char, 1100> buffer{};
    const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                            std::chars_format::fixed);
    static_cast<void>(error); // cannot fail: the buffer holds every value
    std::string text(buffer.data(), end);
    if (std::isfinite(value) && text.find('.') == std::string::npos)
        text += ".0";
    return text;
}

} // namespace

std::string shortestDecimal(double value) {
    return shortest(value);
}

std::string shortestDecimal(float value) {
    return shortest(value);
}

} // namespace noctra
