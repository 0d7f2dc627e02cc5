// The property of a settings manager, which is another program.

#include <vector>

#include "platform/linux/XSettings.h"
#include "tests/fuzz/Fuzz.h"

using namespace noctra;
using fuzz::require;

namespace {

std::optional<std::int32_t> valueIn(const std::vector<std::byte>& bytes) {
    return xsettingsInteger(bytes, "Gtk/EnableAnimations");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto all = std::as_bytes(std::span(data, size));
    std::vector<std::byte> bytes(all.begin(), all.end());
    const auto value = valueIn(bytes);
    // Copies, so that a byte read behind the end is noticed.
    for (std::size_t cut = 0; cut < size; cut += 1 + size / 64)
        if (const auto early = valueIn({bytes.begin(), bytes.begin() + static_cast<long>(cut)}))
            require(early == value, "what comes later does not count");
    bytes.insert(bytes.end(), 64, std::byte{1});
    require(!value || valueIn(bytes) == value, "what comes later does not count");
    return 0;
}
