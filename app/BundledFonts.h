#pragma once

#include "platform/Fonts.h"
#include "platform/Resources.h"

namespace noctra {

/// Registers the fonts that come with the program. One that is missing or that cannot be registered
/// is passed over without a word: the panel draws without it. Main thread.
void registerFonts(const Resources& resources, Fonts& fonts);

} // namespace noctra
