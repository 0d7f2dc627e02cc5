#include "platform/linux/TableRecord.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/RuntimeDirectory.h"

namespace noctra {

struct TableRecord::Slot {
    std::uint64_t seal;                   // 0: the slot holds nothing, or not all of it yet
    std::uint16_t levels[3 * maxEntries]; // red, green, blue, one right behind the other
};

struct TableRecord::Entry {
    std::uint32_t size;
    std::uint32_t settledSlot; // index into written
    Slot base;
    Slot written[2];
};

struct TableRecord::Header {
    char magic[8];
    std::uint32_t version;
    std::uint32_t bytes;
};

struct TableRecord::Layout {
    Header header;
    std::uint32_t crtcs[maxCrtcs]; // 0: unused; the entry has the same index
    Entry entries[maxCrtcs];
};

const TableRecord::Header TableRecord::currentHeader{
    {'n', 'o', 'c', 't', 'r', 'a', 'g', 't'}, 1, sizeof(Layout)};

namespace {

/// A process is killed between two of its own instructions: keeping the compiler from reordering
/// stores is all the ordering that the mapping needs.
void inThisOrder() {
    std::atomic_signal_fence(std::memory_order_seq_cst);
}

/// FNV-1a over 16-bit levels; never 0.
std::uint64_t checksumOf(const std::uint16_t* levels, std::size_t size) {
    std::uint64_t sum = 0xCBF29CE484222325U ^ size;
    for (std::size_t k = 0; k < 3 * size; ++k)
        sum = (sum ^ levels[k]) * 0x100000001B3U;
    return sum != 0 ? sum : 1;
}

} // namespace

TableRecord::TableRecord(Layout* layout, int descriptor, std::string path)
    : layout_(layout), descriptor_(descriptor), path_(std::move(path)) {}

TableRecord::~TableRecord() {
    ::munmap(layout_, sizeof(Layout));
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

TableRecord::Result TableRecord::open(const std::string& path) {
    const auto inMemory = [&](Opened opened, const std::string& error, int descriptor) {
        if (descriptor >= 0)
            ::close(descriptor);
        void* memory = ::mmap(nullptr, sizeof(Layout), PROT_READ | PROT_WRITE,
                              MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        std::unique_ptr<TableRecord> record;
        if (memory != MAP_FAILED)
            record.reset(new TableRecord(static_cast<Layout*>(memory), -1, path));
        return Result{std::move(record), opened, error};
    };
    const auto failure = [&](const char* what, int descriptor) {
        return inMemory(Opened::unavailable,
                        std::string(what) + " " + path + ": " + std::strerror(errno), descriptor);
    };

    const int descriptor = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (descriptor < 0)
        return failure("cannot open", -1);
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        return failure("not a file:", descriptor);
    if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK)
            return inMemory(Opened::inUse, path + " is locked by another process", descriptor);
        return failure("cannot lock", descriptor);
    }
    // Read, not mapped: touching a hole of the file on a full file system would be fatal.
    Header header{};
    const bool fresh =
        status.st_size != static_cast<off_t>(sizeof(Layout)) ||
        ::pread(descriptor, &header, sizeof(header), 0) != static_cast<ssize_t>(sizeof(header)) ||
        std::memcmp(&header, &currentHeader, sizeof(header)) != 0;
    if (!makeRoom(descriptor, fresh))
        return failure("cannot make room in", descriptor);
    // Some systems clean up files in the runtime directory that nobody touches, except sticky ones.
    static_cast<void>(::fchmod(descriptor, S_IRUSR | S_IWUSR | S_ISVTX));
    void* memory =
        ::mmap(nullptr, sizeof(Layout), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    if (memory == MAP_FAILED)
        return failure("cannot map", descriptor);

    auto* layout = static_cast<Layout*>(memory);
    layout->header = currentHeader;
    return {std::unique_ptr<TableRecord>(new TableRecord(layout, descriptor, path)),
            fresh ? Opened::fresh : Opened::existing,
            {}};
}

bool TableRecord::makeRoom(int descriptor, bool anew) {
    if (anew && (::ftruncate(descriptor, 0) != 0 ||
                 ::ftruncate(descriptor, static_cast<off_t>(sizeof(Layout))) != 0))
        return false;
    errno = ::posix_fallocate(descriptor, 0, offsetof(Layout, entries));
    return errno == 0;
}

bool TableRecord::repair() {
    struct stat status {};
    if (descriptor_ < 0)
        return false;
    const bool known = ::fstat(descriptor_, &status) == 0;
    if (known && status.st_size >= static_cast<off_t>(sizeof(Layout))) {
        struct stat named {};
        if (::stat(path_.c_str(), &named) != 0 || named.st_ino != status.st_ino ||
            named.st_dev != status.st_dev)
            makeAnew();
        return false;
    }
    // Where there is no room for the file any more, memory takes the mapping's place.
    if (!makeRoom(descriptor_, true) &&
        ::mmap(layout_, sizeof(Layout), PROT_READ | PROT_WRITE,
               MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE | MAP_FIXED, -1, 0) == MAP_FAILED)
        return false; // out of memory as well: nothing more can be done
    layout_->header = currentHeader;
    return true;
}

/// The next run looks for the file by its name. Until there is one again, the old one serves on.
void TableRecord::makeAnew() {
    if (!makePrivateDirectory(path_.substr(0, path_.rfind('/'))).empty())
        return;
    const Result next = open(path_);
    if (next.opened != Opened::fresh && next.opened != Opened::existing)
        return;
    for (const std::uint32_t crtc : crtcs()) {
        const Entry* entry = find(crtc);
        if (entry == nullptr || !isIntact(entry->base, entry->size))
            continue;
        next.record->setBase(crtc, tablesIn(entry->base, entry->size));
        const Slot& written = entry->written[entry->settledSlot % 2];
        if (written.seal == 0)
            continue;
        next.record->willWrite(crtc, tablesIn(written, entry->size));
        next.record->settled(crtc, true);
    }
    unkept_.merge(next.record->unkept_); // what the new one has no room for
    std::swap(layout_, next.record->layout_);
    std::swap(descriptor_, next.record->descriptor_);
}

std::optional<NativeTables> TableRecord::baseIfOurs(std::uint32_t crtc,
                                                    const NativeTables& current) const {
    if (const auto unkept = unkept_.find(crtc); unkept != unkept_.end())
        return unkept->second.isOurs(current) ? std::optional(unkept->second.base()) : std::nullopt;
    const Entry* entry = find(crtc);
    if (entry == nullptr || entry->size != current.size() || current.size() > maxEntries ||
        !isIntact(entry->base, entry->size))
        return std::nullopt;
    if (!std::any_of(std::begin(entry->written), std::end(entry->written),
                     [&](const Slot& slot) { return slot.seal != 0 && holds(slot, current); }))
        return std::nullopt;
    return tablesIn(entry->base, entry->size);
}

std::optional<TableRecord::Expected> TableRecord::expectedOn(std::uint32_t crtc) const {
    if (const auto unkept = unkept_.find(crtc); unkept != unkept_.end()) {
        const NativeTables* last = unkept->second.lastWritten();
        const NativeTables& own = unkept->second.base();
        return Expected{last != nullptr ? *last : own, last != nullptr && *last != own};
    }
    const Entry* entry = find(crtc);
    if (entry == nullptr || entry->size > maxEntries || !isIntact(entry->base, entry->size))
        return std::nullopt;
    NativeTables own = tablesIn(entry->base, entry->size);
    const Slot& written = entry->written[entry->settledSlot % 2];
    if (written.seal == 0)
        return Expected{std::move(own), false};
    NativeTables last = tablesIn(written, entry->size);
    const bool filtered = last != own;
    return Expected{std::move(last), filtered};
}

/// A base is sealed with a checksum: it is put on a CRTC unseen. A table that was written needs
/// none, it counts only where the CRTC carries the same.
template <typename SealOf>
void TableRecord::store(Slot& slot, const NativeTables& tables, SealOf sealOf) {
    const std::size_t size = tables.size();
    slot.seal = 0;
    inThisOrder();
    std::copy(tables.red.begin(), tables.red.end(), slot.levels);
    std::copy(tables.green.begin(), tables.green.end(), slot.levels + size);
    std::copy(tables.blue.begin(), tables.blue.end(), slot.levels + 2 * size);
    inThisOrder();
    slot.seal = sealOf(slot.levels, size);
}

bool TableRecord::setBase(std::uint32_t crtc, const NativeTables& tables) {
    if (crtc == 0 || tables.size() == 0)
        return false;
    unkept_.erase(crtc);
    if (keepBase(crtc, tables))
        return true;
    if (const Entry* outdated = find(crtc))
        layout_->crtcs[outdated - layout_->entries] = 0;
    // Else the next look at the CRTC would take the program's tables for the CRTC's own.
    unkept_.emplace(crtc, tables);
    return false;
}

bool TableRecord::keepBase(std::uint32_t crtc, const NativeTables& tables) {
    if (tables.size() > maxEntries)
        return false;
    Entry* entry = find(crtc);
    if (entry == nullptr)
        entry = find(0);
    if (entry == nullptr || !reserve(*entry, tables.size()))
        return false;
    for (Slot& slot : entry->written)
        slot.seal = 0;
    entry->base.seal = 0;
    inThisOrder();
    entry->size = static_cast<std::uint32_t>(tables.size());
    store(entry->base, tables, checksumOf);
    inThisOrder();
    layout_->crtcs[entry - layout_->entries] = crtc;
    return true;
}

void TableRecord::willWrite(std::uint32_t crtc, const NativeTables& tables) {
    if (const auto unkept = unkept_.find(crtc); unkept != unkept_.end())
        return unkept->second.willWrite(tables);
    Entry* entry = find(crtc);
    if (entry != nullptr && entry->size == tables.size() && tables.size() <= maxEntries)
        store(entry->written[(entry->settledSlot + 1) % 2], tables,
              [](const std::uint16_t*, std::size_t) { return std::uint64_t(1); });
}

void TableRecord::settled(std::uint32_t crtc, bool accepted) {
    if (const auto unkept = unkept_.find(crtc); unkept != unkept_.end())
        return unkept->second.settled(accepted);
    Entry* entry = find(crtc);
    if (entry == nullptr)
        return;
    const std::uint32_t sentSlot = (entry->settledSlot + 1) % 2;
    if (entry->written[sentSlot].seal == 0)
        return; // nothing was under way
    if (!accepted) {
        entry->written[sentSlot].seal = 0;
        return;
    }
    entry->written[entry->settledSlot % 2].seal = 0;
    entry->settledSlot = sentSlot;
}

std::vector<std::uint32_t> TableRecord::crtcs() const {
    std::vector<std::uint32_t> known;
    std::copy_if(std::begin(layout_->crtcs), std::end(layout_->crtcs), std::back_inserter(known),
                 [](std::uint32_t crtc) { return crtc != 0; });
    for (const auto& [crtc, tables] : unkept_)
        known.push_back(crtc);
    return known;
}

bool TableRecord::reserve(const Entry& entry, std::size_t size) const {
    if (descriptor_ < 0)
        return true;
    // A store into a page that a full file system cannot supply would end the process.
    const auto bytes = static_cast<off_t>(sizeof(Slot::seal) + 3 * size * sizeof(std::uint16_t));
    const auto offsetOf = [&](const void* part) {
        return static_cast<off_t>(static_cast<const char*>(part) -
                                  reinterpret_cast<const char*>(layout_));
    };
    return ::posix_fallocate(descriptor_, offsetOf(&entry), offsetof(Entry, base) + bytes) == 0 &&
           ::posix_fallocate(descriptor_, offsetOf(&entry.written[0]), bytes) == 0 &&
           ::posix_fallocate(descriptor_, offsetOf(&entry.written[1]), bytes) == 0;
}

bool TableRecord::isIntact(const Slot& slot, std::size_t size) {
    return slot.seal != 0 && size > 0 && size <= maxEntries &&
           slot.seal == checksumOf(slot.levels, size);
}

NativeTables TableRecord::tablesIn(const Slot& slot, std::size_t size) {
    const std::uint16_t* levels = slot.levels;
    return {{levels, levels + size},
            {levels + size, levels + 2 * size},
            {levels + 2 * size, levels + 3 * size}};
}

bool TableRecord::holds(const Slot& slot, const NativeTables& tables) {
    const std::size_t size = tables.size();
    return std::equal(tables.red.begin(), tables.red.end(), slot.levels) &&
           std::equal(tables.green.begin(), tables.green.end(), slot.levels + size) &&
           std::equal(tables.blue.begin(), tables.blue.end(), slot.levels + 2 * size);
}

TableRecord::Entry* TableRecord::find(std::uint32_t crtc) const {
    const std::uint32_t* const begin = std::begin(layout_->crtcs);
    const std::uint32_t* const end = std::end(layout_->crtcs);
    const std::uint32_t* const found = std::find(begin, end, crtc);
    return found != end ? &layout_->entries[found - begin] : nullptr;
}

} // namespace noctra
