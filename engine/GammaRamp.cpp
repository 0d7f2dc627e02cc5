#include "engine/GammaRamp.h"

namespace noctra {

namespace {

void scaleChannel(const GammaChannel& captured, double factor, GammaChannel& output) {
    const auto rounded = static_cast<float>(factor);
    for (std::size_t k = 0; k < captured.size(); ++k)
        output[k] = captured[k] * rounded;
}

} // namespace

void scaleGammaTables(const GammaTables& captured, const ChannelGains& gains, double brightness,
                      GammaTables& output) {
    scaleChannel(captured.red, gains.r * brightness, output.red);
    scaleChannel(captured.green, gains.g * brightness, output.green);
    scaleChannel(captured.blue, gains.b * brightness, output.blue);
}

} // namespace noctra
