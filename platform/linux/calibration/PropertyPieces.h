#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "platform/linux/Xcb.h"
#include "platform/linux/calibration/IccProfile.h"

namespace noctra {

/// A part of a property, as it stands when the server gave none.
struct PropertyPiece {
    XcbReply<void> reply;       ///< owns the bytes
    bool isBytes = false;       ///< the property consists of 8-bit units
    std::size_t bytesAfter = 0; ///< what is left of the property behind this piece
    std::span<const std::byte> bytes;
};

/// Lengths and offsets of property requests count units of four bytes. What is asked for at once:
inline constexpr std::uint32_t pieceUnits = 64 * 1024;

/// Puts a profile together from the pieces that `pieceAt` gives for an offset in units. Empty when
/// the property is none of bytes, is larger than `largestIccProfile`, or changes meanwhile.
template <typename PieceAt>
[[nodiscard]] IccProfile joinPieces(PieceAt pieceAt) {
    IccProfile profile;
    for (std::optional<std::size_t> total;;) {
        const PropertyPiece piece = pieceAt(static_cast<std::uint32_t>(profile.size() / 4));
        const std::size_t whole = profile.size() + piece.bytes.size() + piece.bytesAfter;
        if (!piece.isBytes || whole > largestIccProfile || whole != total.value_or(whole))
            return {};
        total = whole;
        profile.insert(profile.end(), piece.bytes.begin(), piece.bytes.end());
        if (piece.bytesAfter == 0)
            return profile;
        if (piece.bytes.size() != std::size_t{pieceUnits} * 4)
            return {}; // not what was asked for: the next piece would leave a gap
    }
}

} // namespace noctra
