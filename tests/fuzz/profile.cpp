// A display's ICC profile, from a file or from a property of the X server.

#include <array>
#include <cmath>
#include <span>
#include <vector>

#include "platform/linux/GammaResampler.h"
#include "platform/linux/calibration/PropertyPieces.h"
#include "platform/linux/calibration/VcgtTables.h"
#include "tests/fuzz/support/Input.h"

using namespace noctra;
using fuzz::require;

namespace {

/// A server that gives pieces of any size, and lies about what is left.
void joinHostilePieces(fuzz::Input input) {
    static const std::vector<std::byte> plenty(std::size_t{pieceUnits} * 4 + 4);
    std::size_t given = 0;
    const IccProfile profile = joinPieces([&](std::uint32_t offset) {
        require(offset * std::size_t{4} == given, "the next piece is asked for");
        const auto kind = input.number<std::uint8_t>();
        std::size_t size = std::size_t{pieceUnits} * 4;
        if ((kind & 6) != 0)
            size = input.number<std::uint32_t>() % (plenty.size() + 1);
        given += size;
        return PropertyPiece{nullptr, (kind & 1) == 0, input.number<std::uint32_t>(),
                             std::span(plenty).first(size)};
    });
    require(profile.size() <= largestIccProfile, "a profile is not too large");
    require(profile.empty() || profile.size() == given, "a profile is whole");
}

void checkLevels(const GammaTables& tables) {
    for (const GammaChannel* channel : {&tables.red, &tables.green, &tables.blue})
        for (const float level : *channel)
            require(std::isfinite(level) && level >= 0.0F && level <= 1.0F, "levels are in range");
}

bool canBeRead(const std::vector<std::uint16_t>& quarters) {
    return quarters[3] - quarters[0] >= 65535 / 20 - 1;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const auto kind = input.number<std::uint8_t>();
    if (kind >= 0x80) {
        joinHostilePieces(input);
        return 0;
    }
    constexpr std::array<std::size_t, 5> sizes{256, 1, 2, 1024, 4096};
    const std::size_t entries = sizes[kind % sizes.size()];
    const auto profile = std::as_bytes(input.rest());
    const auto tables = vcgtTables(profile, entries);
    if (!tables)
        return 0;
    for (const auto* channel : {&tables->red, &tables->green, &tables->blue})
        require(channel->size() == entries, "every channel has all entries");
    require(vcgtTables(profile, entries) == tables, "the same profile gives the same tables");
    GammaTables sampled;
    sampleNativeTables(*tables, sampled);
    checkLevels(sampled);
    if (const auto quarters = vcgtTables(profile, 5))
        require(canBeRead(quarters->red) || canBeRead(quarters->green) || canBeRead(quarters->blue),
                "the screen can be read");
    return 0;
}
