// A display's ICC profile, from a file or from a property of the X server. The first byte is how many
// entries its tables are to have.

#include "platform/linux/calibration/VcgtTables.h"
#include "tests/fuzz/Fuzz.h"

using namespace noctra;
using fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t sizes[]{256, 1, 2, 1024, 4096};
    if (size == 0)
        return 0;
    const std::size_t entries = sizes[data[0] % std::size(sizes)];
    const auto tables = vcgtTables(std::as_bytes(std::span(data + 1, size - 1)), entries);
    if (tables)
        for (const auto* channel : {&tables->red, &tables->green, &tables->blue})
            require(channel->size() == entries, "every channel has all entries");
    return 0;
}
