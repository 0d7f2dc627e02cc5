#pragma once

#include <cstdint>

// What the program's own display-services library exports besides the five functions that every
// such library has. The program looks these up in the library once it has been loaded.

namespace noctra::display_services {

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

/// Waits until everything that has been asked for is written or has failed for good, at most
/// `milliseconds`. Returns 1 when all is done, 0 when the time ran out. Any thread; for the end of
/// the process: checks after writes are left out from the first call on.
using Finish = int(int milliseconds);
inline constexpr const char* finishSymbol = "NoctraDisplayServicesFinish";

} // namespace noctra::display_services
