#include "platform/linux/GammaResampler.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace noctra {

namespace {

constexpr float fullLevel = 65535.0F;

/// Clamps on the bits, whose order is that of the values from 0.0 upwards: integers vectorise where
/// comparing floats, with its regard to not-a-number, does not. Not-a-number ends up at 0.0 or 1.0.
std::uint16_t toLevel(float value) {
    const auto bits = std::bit_cast<std::int32_t>(value);
    constexpr auto one = std::bit_cast<std::int32_t>(1.0F);
    const std::int32_t clamped = std::min(std::max(bits, 0), one);
    return static_cast<std::uint16_t>(
        static_cast<std::int32_t>(std::bit_cast<float>(clamped) * fullLevel + 0.5F));
}

/// The level at `index` of `size` evenly spread positions over `source`.
template <typename Channel>
double interpolated(const Channel& source, std::size_t index, std::size_t size) {
    const auto last = static_cast<double>(source.size() - 1);
    const double position =
        size > 1 ? static_cast<double>(index) * last / static_cast<double>(size - 1) : last;
    const auto below = static_cast<std::size_t>(position);
    const std::size_t above = std::min(below + 1, source.size() - 1);
    const double part = position - static_cast<double>(below);
    const auto low = static_cast<double>(source[below]);
    return low + (static_cast<double>(source[above]) - low) * part;
}

void sampleChannel(const std::vector<std::uint16_t>& native, GammaChannel& sampled) {
    if (native.size() == sampled.size()) {
        for (std::size_t k = 0; k < sampled.size(); ++k)
            sampled[k] = static_cast<float>(native[k]) / fullLevel;
        return;
    }
    for (std::size_t k = 0; k < sampled.size(); ++k)
        sampled[k] = static_cast<float>(interpolated(native, k, sampled.size()) / fullLevel);
}

void channelToNative(const GammaChannel& channel, const GammaChannel* sampled,
                     const std::vector<std::uint16_t>* native, std::vector<std::uint16_t>& output) {
    if (output.size() == channel.size()) {
        for (std::size_t k = 0; k < channel.size(); ++k)
            output[k] = toLevel(channel[k]);
        return;
    }
    for (std::size_t j = 0; j < output.size(); ++j) {
        const double wanted = interpolated(channel, j, output.size());
        if (sampled == nullptr) {
            output[j] = toLevel(static_cast<float>(wanted));
            continue;
        }
        const double base = interpolated(*sampled, j, output.size());
        const double own = (*native)[j] / static_cast<double>(fullLevel);
        if (wanted == base)
            output[j] = (*native)[j];
        else
            output[j] = toLevel(static_cast<float>(base > 0.0 ? own * (wanted / base) : wanted));
    }
}

} // namespace

void sampleNativeTables(const NativeTables& native, GammaTables& sampled) {
    sampleChannel(native.red, sampled.red);
    sampleChannel(native.green, sampled.green);
    sampleChannel(native.blue, sampled.blue);
}

void tablesToNative(const GammaTables& tables, const CapturedTables* captured,
                    NativeTables& output) {
    const auto convert = [&](const auto& member, auto nativeMember) {
        channelToNative(tables.*member, captured ? &(captured->sampled.*member) : nullptr,
                        captured ? &(captured->native.*nativeMember) : nullptr,
                        output.*nativeMember);
    };
    convert(&GammaTables::red, &NativeTables::red);
    convert(&GammaTables::green, &NativeTables::green);
    convert(&GammaTables::blue, &NativeTables::blue);
}

} // namespace noctra
