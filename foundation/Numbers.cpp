#include "foundation/Numbers.h"

#include <array>
#include <charconv>
#include <cmath>

namespace noctra {

namespace {

template <typename Number>
std::string shortest(Number value) {
    const Number size = std::abs(value);
    const bool isPlain = size == 0 || (size >= Number(1e-4) && size < Number(1e16));
    std::array<char, 32> buffer{}; // holds every value
    const auto [end, error] =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                      isPlain ? std::chars_format::fixed : std::chars_format::scientific);
    static_cast<void>(error);
    std::string text(buffer.data(), end);
    if (isPlain && text.find('.') == std::string::npos)
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
