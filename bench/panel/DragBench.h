#pragma once

#include "bench/panel/Noctra.h"
#include "bench/panel/ServerView.h"

namespace noctra::bench {

/// Drags the warmth fader with the X server's pointer and prints how long the displays take to
/// follow, beside the filter alone, and which frames are drawn meanwhile. `noctra` has instruments
/// and shows no panel yet. Throws std::runtime_error where it does not answer.
void benchDrag(Noctra& noctra, const ServerView& server);

} // namespace noctra::bench
