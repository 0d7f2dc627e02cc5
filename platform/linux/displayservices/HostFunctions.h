#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/DisplayIdentity.h"

// What the program's own display-services library exports besides the five functions that every
// such library has. The program looks these up in the library once it has been loaded.

namespace noctra::display_services {

/// Hands over the attached displays, in the desktop's order: before the first of the five is
/// called, and after each change. Any thread; never waits for hardware. What an earlier run could
/// not put back is begun here.
using SetDisplays = void(const AttachedDisplay* displays, std::size_t count);
inline constexpr const char* setDisplaysSymbol = "NoctraDisplayServicesSetDisplays";

/// The file of the state folder with the levels that have to be put back; not there while there are
/// none.
inline constexpr const char* ownLevelsFile = "own-levels";

/// Readable (an eventfd) while there is news. The descriptor stays the library's.
using NewsDescriptor = int();
inline constexpr const char* newsDescriptorSymbol = "NoctraDisplayServicesNewsDescriptor";

/// Returns what has happened since the last call, a set of the bits below. Any thread.
using TakeNews = std::uint32_t();
inline constexpr const char* takeNewsSymbol = "NoctraDisplayServicesTakeNews";
/// Which displays can be changed is not what it was when it was last asked.
inline constexpr std::uint32_t controllabilityChanged = 1;
/// A panel's backlight has been written; some drivers load tables of their own then.
inline constexpr std::uint32_t backlightWritten = 2;

/// Puts back the level of every display that still has another than its own, and waits until that
/// has been seen there, at most `milliseconds`. Returns 1 when all is done, 0 when the time ran
/// out. Any thread; for the end of the process.
using Finish = int(int milliseconds);
inline constexpr const char* finishSymbol = "NoctraDisplayServicesFinish";

} // namespace noctra::display_services
