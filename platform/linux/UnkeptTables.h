#pragma once

#include <array>
#include <cstddef>
#include <optional>

#include "platform/linux/NativeTables.h"

namespace noctra {

/// What a record of tables knows of one CRTC that its file has no room for: the same, but only
/// while the process lives. Noting a write allocates nothing. One thread at a time.
class UnkeptTables {
public:
    /// `base`: the CRTC's own tables.
    explicit UnkeptTables(const NativeTables& base);

    [[nodiscard]] const NativeTables& base() const { return base_; }
    /// Whether `current` is what was written last, or is being written.
    [[nodiscard]] bool isOurs(const NativeTables& current) const;
    /// What was written last; nothing where nothing has been.
    [[nodiscard]] const NativeTables* lastWritten() const;
    void willWrite(const NativeTables& tables);
    void settled(bool accepted);

private:
    struct Slot {
        NativeTables tables;
        bool isUsed = false;
    };

    NativeTables base_;
    std::array<Slot, 2> written_;
    std::size_t settledSlot_ = 0;
};

} // namespace noctra
