#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/NativeTables.h"
#include "platform/linux/UnkeptTables.h"

namespace noctra {

/// What the program has written to each CRTC and what that CRTC carried before, kept where it
/// survives the program being killed, so that the next run can take a filter off that it finds on a
/// CRTC.
///
/// A shared mapping of a file: noting a write costs a copy of one table and no system call, and
/// what was noted survives SIGKILL at any instruction. The last settled write and one under way are
/// kept side by side, each with a checksum: whichever of the two the CRTC carries is recognised.
/// One thread at a time. Tables with more than 4096 entries, CRTCs beyond the 64th, and those for
/// which the disk has no room, are known as long as the process lives, and not kept.
class TableRecord {
public:
    static constexpr std::size_t maxEntries = 4096;
    static constexpr std::size_t maxCrtcs = 64;

    enum class Opened { fresh, existing, inUse, unavailable };
    struct Result;

    /// Opens or creates the file `path` (mode 0600, links are not followed) and locks it for the
    /// life of the record. A file with another layout starts afresh. `inUse`: another process holds
    /// the lock. With `unavailable` and `inUse` the record is kept in memory only; `error` says
    /// why.
    static Result open(const std::string& path);

    TableRecord(const TableRecord&) = delete;
    TableRecord& operator=(const TableRecord&) = delete;
    ~TableRecord();

    /// The tables that `crtc` carried before the program wrote to it, if what it carries now
    /// (`current`) is what the program wrote there last.
    [[nodiscard]] std::optional<NativeTables> baseIfOurs(std::uint32_t crtc,
                                                         const NativeTables& current) const;
    /// What `crtc` should carry now: what the program wrote there last, or else its own tables.
    struct Expected {
        NativeTables tables;
        bool filtered; ///< they are not its own
    };
    [[nodiscard]] std::optional<Expected> expectedOn(std::uint32_t crtc) const;
    /// `tables` are `crtc`'s own, and nothing of the program's is on it. False when there is no
    /// room to keep them, or there are none: the CRTC then has no protection against the program
    /// being killed.
    bool setBase(std::uint32_t crtc, const NativeTables& tables);
    /// `tables` are about to be sent to `crtc`. Does nothing for a CRTC without a base.
    void willWrite(std::uint32_t crtc, const NativeTables& tables);
    /// The display server has taken or refused what was sent last.
    void settled(std::uint32_t crtc, bool accepted);

    /// To be called before a round of writes: makes the file whole again if somebody has shortened
    /// it, which would end the process at the next store. True when it had to: then nothing is
    /// known of any CRTC any more. Makes the file anew, with what is known, if somebody has removed
    /// it, perhaps with its directory; where that fails it is tried again the next time.
    bool repair();

    /// Every CRTC that has a base.
    [[nodiscard]] std::vector<std::uint32_t> crtcs() const;

private:
    struct Header;
    struct Layout;
    struct Entry;
    struct Slot;

    TableRecord(Layout* layout, int descriptor, std::string path);
    void makeAnew();
    [[nodiscard]] bool keepBase(std::uint32_t crtc, const NativeTables& tables);
    [[nodiscard]] bool reserve(const Entry& entry, std::size_t size) const;
    static bool makeRoom(int descriptor, bool anew);
    static bool isIntact(const Slot& slot, std::size_t size);
    static NativeTables tablesIn(const Slot& slot, std::size_t size);
    template <typename SealOf>
    static void store(Slot& slot, const NativeTables& tables, SealOf sealOf);
    static bool holds(const Slot& slot, const NativeTables& tables);
    [[nodiscard]] Entry* find(std::uint32_t crtc) const;

    static const Header currentHeader;
    Layout* layout_;
    int descriptor_;
    const std::string path_;
    std::map<std::uint32_t, UnkeptTables> unkept_; ///< by CRTC; none that is in the file
};

struct TableRecord::Result {
    std::unique_ptr<TableRecord> record;
    Opened opened;
    std::string error;
};

} // namespace noctra
