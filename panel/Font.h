#pragma once

#include <string>

namespace noctra {

/// A font to draw text with.
struct Font {
    std::string family;      ///< empty: the system's, or the system's monospaced one
    double size = 0.0;       ///< points
    int weight = 400;        ///< 100 (thin) to 900 (black), 400 is regular
    bool monospaced = false; ///< where `family` is empty

    friend bool operator==(const Font&, const Font&) = default;
};

} // namespace noctra
