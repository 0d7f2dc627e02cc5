// The record of the tables that an earlier run wrote, with bytes of its file overwritten: four bytes say
// where, one how many, then come the bytes.

#include <cstring>
#include <filesystem>

#include <fcntl.h>
#include <unistd.h>

#include "platform/linux/TableRecord.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/support/TemporaryFolder.h"

using namespace noctra;
using fuzz::require;

namespace {

NativeTables ramp(std::size_t size, int top) {
    std::vector<std::uint16_t> channel;
    for (std::size_t k = 1; k <= size; ++k)
        channel.push_back(static_cast<std::uint16_t>(k * static_cast<std::size_t>(top) / size));
    return {channel, channel, channel};
}

void damage(const std::string& path, const std::uint8_t* data, std::size_t size) {
    const int file = ::open(path.c_str(), O_RDWR | O_CLOEXEC);
    const auto whole = static_cast<std::size_t>(::lseek(file, 0, SEEK_END));
    while (size > 5) {
        std::uint32_t where = 0;
        std::memcpy(&where, data, sizeof where);
        const std::size_t count = std::min<std::size_t>(data[4], size - 5);
        require(::pwrite(file, data + 5, count, static_cast<off_t>(where % (whole - 256))) >= 0,
                "the file can be written");
        data += 5 + count;
        size -= 5 + count;
    }
    ::close(file);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const test::TemporaryFolder folder;
    const std::string path = folder / "tables";
    std::filesystem::remove(path);
    for (const std::uint32_t crtc : {1, 2, 3}) {
        const auto record = TableRecord::open(path).record;
        require(record->setBase(crtc, ramp(crtc * 2, 60000)), "there is room for a base");
        record->willWrite(crtc, ramp(crtc * 2, 30000));
        record->settled(crtc, crtc != 2);
    }
    damage(path, data, size);

    const auto [record, opened, error] = TableRecord::open(path);
    require(record && error.empty(), "any file can be used");
    for (const std::uint32_t crtc : record->crtcs())
        if (const auto expected = record->expectedOn(crtc)) {
            const auto base = record->baseIfOurs(crtc, expected->tables);
            require(!base || base->size() == expected->tables.size(), "a base fits its CRTC");
        }
    require(record->setBase(9, ramp(16, 65535)) || record->crtcs().size() == TableRecord::maxCrtcs,
            "there is room for another CRTC");
    return 0;
}
