#include "tests/desktop/support/ExpectedTables.h"

#include <algorithm>
#include <cmath>

namespace noctra::desktop {

namespace {

constexpr double neutralKelvin = 6500;
constexpr double coolestOfTheModel = 25000;
constexpr double warmestOfTheModel = 2000;
constexpr double fullLevel = 65535;

double unit(double value) {
    return std::clamp(value, 0.0, 1.0);
}

/// The value of a polynomial, highest power first.
double polynomial(double at, double cube, double square, double line, double constant) {
    return ((cube * at + square) * at + line) * at + constant;
}

/// A black body's colour in linear light: chromaticity by cubic splines, then the usual matrix.
Multipliers blackBody(double kelvin) {
    const double t = std::clamp(kelvin, warmestOfTheModel, coolestOfTheModel);
    const double x = t > 4000 ? polynomial(1 / t, -3025846900.0, 2107037.9, 222.6347, 0.24039)
                              : polynomial(1 / t, -266123900.0, -234358.0, 877.6956, 0.17991);
    double y = 0;
    if (t <= 2222)
        y = polynomial(x, -1.1063814, -1.3481102, 2.18555832, -0.20219683);
    else if (t <= 4000)
        y = polynomial(x, -0.9549476, -1.37418593, 2.09137015, -0.16748867);
    else
        y = polynomial(x, 3.081758, -5.8733867, 3.75112997, -0.37001483);
    const double X = x / y;
    const double Z = (1 - x - y) / y;
    const auto channel = [&](double ofX, double ofY, double ofZ) {
        return std::clamp(ofX * X + ofY + ofZ * Z, 0.0, 4.0);
    };
    return {channel(3.2406, -1.5372, -0.4986), channel(-0.9689, 1.8758, 0.0415),
            channel(0.0557, -0.204, 1.057)};
}

Multipliers relativeToNeutral(double kelvin) {
    const Multipliers colour = blackBody(kelvin);
    const Multipliers neutral = blackBody(neutralKelvin);
    return {unit(colour.red / neutral.red), unit(colour.green / neutral.green),
            unit(colour.blue / neutral.blue)};
}

std::vector<std::uint16_t> scaled(const std::vector<std::uint16_t>& levels, double factor) {
    std::vector<std::uint16_t> result;
    for (const std::uint16_t level : levels)
        result.push_back(static_cast<std::uint16_t>(std::lround(level * factor)));
    return result;
}

/// A calibration curve: a power with an offset and a top below full.
std::vector<std::uint16_t> curve(std::size_t entries, double power, double lowest, double highest) {
    std::vector<std::uint16_t> levels;
    for (std::size_t entry = 0; entry < entries; ++entry) {
        const double input = static_cast<double>(entry) / static_cast<double>(entries - 1);
        const double output = lowest + (highest - lowest) * std::pow(input, power);
        levels.push_back(static_cast<std::uint16_t>(std::lround(output * fullLevel)));
    }
    return levels;
}

} // namespace

Multipliers multipliersFor(double warmth) {
    const double kelvin = neutralKelvin * (1 - unit(warmth));
    const Multipliers colour = relativeToNeutral(std::max(kelvin, warmestOfTheModel));
    if (kelvin > warmestOfTheModel)
        return colour;
    const double depth = unit(1 - kelvin / warmestOfTheModel);
    const double towardsRed = depth * depth * (3 - 2 * depth);
    return {std::lerp(colour.red, 1.0, towardsRed), std::lerp(colour.green, 0.0, towardsRed),
            std::lerp(colour.blue, 0.0, towardsRed)};
}

TablesByCrtc expectedTables(const TablesByCrtc& captured, double warmth, double brightness) {
    const Multipliers colour = multipliersFor(warmth);
    TablesByCrtc expected;
    for (const auto& [crtc, tables] : captured)
        expected[crtc] = {scaled(tables.red, colour.red * brightness),
                          scaled(tables.green, colour.green * brightness),
                          scaled(tables.blue, colour.blue * brightness)};
    return expected;
}

TablesByCrtc calibratedLike(const TablesByCrtc& tables) {
    TablesByCrtc calibrated;
    for (const auto& [crtc, itsTables] : tables) {
        const std::size_t entries = itsTables.red.size();
        const double bend = 0.05 * crtc;
        calibrated[crtc] = {curve(entries, 0.85 + bend, 0.0, 1.0 - bend / 10),
                            curve(entries, 1.10 + bend, 0.01, 0.97),
                            curve(entries, 1.25 - bend, 0.02, 0.91)};
    }
    return calibrated;
}

} // namespace noctra::desktop
