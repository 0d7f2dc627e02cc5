// The record of the tables that an earlier run wrote, after something has happened to its file.

#include <algorithm>
#include <array>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/TableRecord.h"
#include "tests/fuzz/support/Input.h"
#include "tests/fuzz/support/ScratchFolder.h"

using namespace noctra;
using fuzz::require;

namespace {

constexpr std::size_t headerSize = 16;

NativeTables ramp(std::size_t size, int top) {
    std::vector<std::uint16_t> channel;
    for (std::size_t k = 1; k <= size; ++k)
        channel.push_back(static_cast<std::uint16_t>(k * static_cast<std::size_t>(top) / size));
    return {channel, channel, channel};
}

/// The record of a run that was killed: three CRTCs, one of them in the middle of a write.
void recordRun(TableRecord& record) {
    for (const std::uint32_t crtc : {1, 2, 3}) {
        require(record.setBase(crtc, ramp(crtc * 2, 60000)), "there is room for a base");
        record.willWrite(crtc, ramp(crtc * 2, 30000));
        record.settled(crtc, crtc != 2);
    }
    record.willWrite(3, ramp(6, 20000));
}

/// Overwrites the file here and there, then perhaps cuts it or adds to it.
class Damage {
public:
    explicit Damage(const std::string& path) : file_(::open(path.c_str(), O_RDWR | O_CLOEXEC)) {
        struct stat status {};
        require(file_ >= 0 && ::fstat(file_, &status) == 0, "the record is a file");
        size_ = static_cast<std::size_t>(status.st_size);
    }
    ~Damage() { ::close(file_); }

    void replaceWith(std::span<const std::uint8_t> bytes) {
        require(::ftruncate(file_, 0) == 0, "the file can be cut");
        write(bytes, 0);
        size_ = bytes.size();
    }
    void overwrite(fuzz::Input& input) {
        // 64 equal parts after the rest: so every number of a part is near to its beginning.
        const std::size_t part = size_ / 64;
        while (!input.empty()) {
            const auto where = input.number<std::uint8_t>();
            const auto offset = input.number<std::uint16_t>();
            if (where == 0xFF) {
                resize(offset % 2 == 0 ? offset / 2U : size_ + offset / 2U);
                return;
            }
            const std::size_t begin = where == 0 ? 0 : size_ - (65U - (where % 64U + 1U)) * part;
            const auto bytes = input.take(input.number<std::uint8_t>() % 17);
            if (begin + offset + bytes.size() <= size_)
                write(bytes, begin + offset);
        }
    }
    /// Whether the file still is a record of this version.
    [[nodiscard]] bool isRecord(const std::array<char, headerSize>& header,
                                std::size_t whole) const {
        std::array<char, headerSize> found{};
        return size_ == whole &&
               ::pread(file_, found.data(), found.size(), 0) == ssize_t{headerSize} &&
               found == header;
    }
    std::array<char, headerSize> header() const {
        std::array<char, headerSize> bytes{};
        require(::pread(file_, bytes.data(), bytes.size(), 0) == ssize_t{headerSize}, "has header");
        return bytes;
    }
    [[nodiscard]] std::size_t size() const { return size_; }

private:
    void resize(std::size_t size) {
        require(::ftruncate(file_, static_cast<off_t>(size)) == 0, "the file's size can change");
        size_ = size;
    }
    void write(std::span<const std::uint8_t> bytes, std::size_t offset) {
        require(::pwrite(file_, bytes.data(), bytes.size(), static_cast<off_t>(offset)) ==
                    static_cast<ssize_t>(bytes.size()),
                "the file can be written");
    }

    const int file_;
    std::size_t size_ = 0;
};

void checkTables(const NativeTables& tables) {
    require(tables.size() >= 1 && tables.size() <= TableRecord::maxEntries, "tables have a size");
    require(tables.green.size() == tables.size() && tables.blue.size() == tables.size(),
            "tables have three channels");
}

void checkKnown(const TableRecord& record, std::uint32_t crtc) {
    const auto expected = record.expectedOn(crtc);
    if (!expected)
        return;
    checkTables(expected->tables);
    if (const auto base = record.baseIfOurs(crtc, expected->tables)) {
        checkTables(*base);
        require(base->size() == expected->tables.size(), "a base fits its CRTC");
    }
    NativeTables others = expected->tables;
    others.resize(others.size() + 1);
    require(!record.baseIfOurs(crtc, others), "tables of another size are not the program's");
}

/// Whatever was in the file: what is written now is kept.
void checkWriting(TableRecord& record, std::uint32_t crtc) {
    const NativeTables own = ramp(16, 65535);
    const NativeTables dimmed = ramp(16, 1000);
    if (!record.setBase(crtc, own)) {
        require(record.crtcs().size() == TableRecord::maxCrtcs, "there is room for another CRTC");
        return;
    }
    auto expected = record.expectedOn(crtc);
    require(expected && expected->tables == own && !expected->filtered, "a base is expected");
    require(!record.baseIfOurs(crtc, own), "a base is nothing that was written");
    record.willWrite(crtc, dimmed);
    require(record.baseIfOurs(crtc, dimmed) == own, "a write under way is recognised");
    record.settled(crtc, true);
    expected = record.expectedOn(crtc);
    require(expected && expected->tables == dimmed && expected->filtered, "a write is expected");
    require(record.baseIfOurs(crtc, dimmed) == own, "a settled write is recognised");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::ScratchFolder scratch;
    const std::string path = scratch.path() + "/tables";
    std::filesystem::remove(path);
    recordRun(*TableRecord::open(path).record);

    fuzz::Input input(data, size);
    bool isRecord = false;
    {
        Damage damage(path);
        const auto header = damage.header();
        const std::size_t whole = damage.size();
        const auto kind = input.number<std::uint8_t>();
        if (kind % 4 == 3)
            damage.replaceWith(input.rest());
        else
            damage.overwrite(input);
        isRecord = damage.isRecord(header, whole);
    }
    const auto [record, opened, error] = TableRecord::open(path);
    require(record && error.empty(), "any file can be used");
    require((opened == TableRecord::Opened::existing) == isRecord,
            "a record is known by its header");
    auto crtcs = record->crtcs();
    require(isRecord || crtcs.empty(), "what is no record says nothing");
    require(crtcs.size() <= TableRecord::maxCrtcs, "there are not too many CRTCs");
    crtcs.push_back(9);
    for (const std::uint32_t crtc : crtcs) {
        checkKnown(*record, crtc);
        checkWriting(*record, crtc);
    }
    require(::truncate(path.c_str(), 100) == 0 && record->repair(), "a file cut short is noticed");
    require(record->crtcs().empty(), "nothing is known after it");
    checkWriting(*record, 9);
    return 0;
}
