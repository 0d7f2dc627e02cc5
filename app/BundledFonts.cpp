#include "app/BundledFonts.h"

namespace noctra {

void registerFonts(const Resources& resources, Fonts& fonts) {
    for (const char* name : {"Anybody-Bold", "Anybody-ExtraBold"})
        if (const auto path = resources.path(name, "ttf"))
            fonts.registerFont(*path);
}

} // namespace noctra
