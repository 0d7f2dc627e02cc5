#include "panel/BrandFont.h"

#include <string>

namespace noctra {

namespace {

constexpr int bold = 700;
constexpr int heavy = 900;

} // namespace

Font BrandFont::anybody(const Fonts& fonts, double size, std::string_view weight) {
    if (const auto face = fonts.find("Anybody-" + std::string(weight)))
        return {.family = face->family, .size = size, .weight = face->weight};
    return {.family = {}, .size = size, .weight = weight == "ExtraBold" ? heavy : bold};
}

} // namespace noctra
