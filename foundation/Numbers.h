#pragma once

#include <string>

namespace noctra {

/// The shortest decimal form that reads back as the same value, without an exponent and with at
/// least one fractional digit: "0.0", "0.35", "1.0". Not-a-number and the infinities give "nan",
/// "inf", "-inf".
[[nodiscard]] std::string shortestDecimal(double value);
/// The same for the shortest form of a 32-bit float: 0.1f gives "0.1".
[[nodiscard]] std::string shortestDecimal(float value);

} // namespace noctra
