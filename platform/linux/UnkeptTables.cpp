#include "platform/linux/UnkeptTables.h"

#include <algorithm>

namespace noctra {

UnkeptTables::UnkeptTables(const NativeTables& base)
    : base_(base), written_{Slot{base, false}, Slot{base, false}} {}

bool UnkeptTables::isOurs(const NativeTables& current) const {
    return std::any_of(written_.begin(), written_.end(),
                       [&](const Slot& slot) { return slot.isUsed && slot.tables == current; });
}

const NativeTables* UnkeptTables::lastWritten() const {
    const Slot& last = written_[settledSlot_];
    return last.isUsed ? &last.tables : nullptr;
}

void UnkeptTables::willWrite(const NativeTables& tables) {
    Slot& sent = written_[1 - settledSlot_];
    sent.tables = tables; // into memory that is there already
    sent.isUsed = true;
}

void UnkeptTables::settled(bool accepted) {
    Slot& sent = written_[1 - settledSlot_];
    if (!sent.isUsed)
        return; // nothing was under way
    if (!accepted) {
        sent.isUsed = false;
        return;
    }
    written_[settledSlot_].isUsed = false;
    settledSlot_ = 1 - settledSlot_;
}

} // namespace noctra
