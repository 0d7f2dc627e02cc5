#pragma once

#include <cstdint>

#include "platform/linux/tray/PixelRect.h"

namespace noctra {

enum class Edge { left, top, right, bottom };

/// What a window reserves at one edge of the X screen, in pixels.
struct StrutSide {
    int size = 0;  ///< how far in from the edge of the whole X screen; 0: nothing
    int start = 0; ///< first and last pixel along the edge
    int end = 0;

    friend constexpr bool operator==(const StrutSide&, const StrutSide&) = default;
};

/// As _NET_WM_STRUT_PARTIAL has it.
struct Strut {
    StrutSide left = {}, right = {}, top = {}, bottom = {};

    [[nodiscard]] constexpr const StrutSide& at(Edge edge) const {
        switch (edge) {
        case Edge::left:
            return left;
        case Edge::right:
            return right;
        case Edge::top:
            return top;
        default:
            return bottom;
        }
    }
    friend constexpr bool operator==(const Strut&, const Strut&) = default;
};

/// A panel or bar of the desktop.
struct Dock {
    std::uint32_t window = 0;    ///< its X window
    std::uint32_t processId = 0; ///< as the window says; 0: it does not
    PixelRect frame = {};        ///< on the X screen
    Strut strut = {};
};

} // namespace noctra
