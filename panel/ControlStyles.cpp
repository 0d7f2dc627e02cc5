#include "panel/ControlStyles.h"

#include <algorithm>

namespace noctra {

namespace {

double mixed(double from, double to, double amount) {
    return from + (to - from) * amount;
}

Color mixed(const Color& from, const Color& to, double amount) {
    const auto component = [&](double a, double b) {
        return std::clamp(mixed(a, b, amount), 0.0, 1.0);
    };
    return {component(from.red, to.red), component(from.green, to.green),
            component(from.blue, to.blue), component(from.alpha, to.alpha)};
}

VerticalGradient mixed(const VerticalGradient& from, const VerticalGradient& to, double amount) {
    return {mixed(from.top, to.top, amount), mixed(from.bottom, to.bottom, amount)};
}

} // namespace

ButtonStyle mixed(const ButtonStyle& from, const ButtonStyle& to, double amount) {
    return {
        .foreground = mixed(from.foreground, to.foreground, amount),
        .background = mixed(from.background, to.background, amount),
        .border = mixed(from.border, to.border, amount),
        .shadow = {.color = mixed(from.shadow.color, to.shadow.color, amount),
                   .radius = std::max(0.0, mixed(from.shadow.radius, to.shadow.radius, amount)),
                   .offsetY = mixed(from.shadow.offsetY, to.shadow.offsetY, amount)},
    };
}

} // namespace noctra
