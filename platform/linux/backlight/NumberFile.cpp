#include "platform/linux/backlight/NumberFile.h"

#include <array>
#include <charconv>
#include <string_view>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace noctra {

NumberFile::NumberFile(const std::string& path)
    : descriptor_(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}

NumberFile::NumberFile(NumberFile&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

NumberFile& NumberFile::operator=(NumberFile&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
}

NumberFile::~NumberFile() {
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

std::optional<unsigned int> NumberFile::read() const {
    // Reading from the start of the file makes the kernel ask the driver anew.
    std::array<char, 32> bytes{};
    const ssize_t count = ::pread(descriptor_, bytes.data(), bytes.size(), 0);
    if (count <= 0 || count == static_cast<ssize_t>(bytes.size()))
        return std::nullopt;
    const std::string_view text(bytes.data(), static_cast<std::size_t>(count));
    unsigned int number = 0;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number);
    const auto rest = text.substr(static_cast<std::size_t>(parsed.ptr - text.data()));
    if (parsed.ec != std::errc() || rest.find_first_not_of(" \n") != std::string_view::npos)
        return std::nullopt;
    return number;
}

} // namespace noctra
