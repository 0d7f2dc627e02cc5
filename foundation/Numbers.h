#pragma once

#include <string>

namespace noctra {

/// The shortest decimal form that reads back as the same value: with at least one fractional digit
/// ("0.0", "0.35", "1.0"), with an exponent only below 0.0001 and from 1e16 on ("1e-05").
/// Not-a-number and the infinities give "nan", "inf", "-inf".
[[nodiscard]] std::string shortestDecimal(double value);
/// The same for the shortest form of a 32-bit float: 0.1f gives "0.1".
[[nodiscard]] std::string shortestDecimal(float value);

} // namespace noctra
