#ifndef ZUTARNEX_SAXENGINE_INTERNTABLE_H
#define ZUTARNEX_SAXENGINE_INTERNTABLE_H

#include "KeyedHash.h"
#include "UnitSpan.h"

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace Quillon::SaxEngine {

/// Keeps one Entry per distinct text, at an address that never changes. An Entry has a member `text`, an XmlString.
///
/// Cost: looking a text up hashes it once and allocates nothing; a text that is new makes an entry.
template <class Entry>
class InternTable {
public:
    /// The entry of `text`, or null.
    Entry* find(UnitSpan text) const {
        return slots_.empty() ? nullptr : slots_[slotOf(text, keyedHash(text))].entry.get();
    }

    /// The entry of `text`; `make()` gives a std::unique_ptr<Entry> when there is none. Nothing changes when it throws.
    template <class Make>
    Entry& intern(UnitSpan text, Make make) {
        const std::uint64_t hash = keyedHash(text);
        if (!slots_.empty())
            if (Entry* found = slots_[slotOf(text, hash)].entry.get())
                return *found;
        std::unique_ptr<Entry> entry = make();
        if (2 * (count_ + 1) > slots_.size())
            grow();
        Slot& slot = slots_[slotOf(text, hash)];
        slot.hash = hash;
        slot.entry = std::move(entry);
        ++count_;
        return *slot.entry;
    }

private:
    struct Slot {
        std::uint64_t hash = 0;
        std::unique_ptr<Entry> entry;
    };

    /// Where `text` is, or where it belongs: the table is never full.
    std::size_t slotOf(UnitSpan text, std::uint64_t hash) const {
        const std::size_t mask = slots_.size() - 1;
        std::size_t i = static_cast<std::size_t>(hash) & mask;
        while (slots_[i].entry && !(slots_[i].hash == hash && UnitSpan(slots_[i].entry->text) == text))
            i = (i + 1) & mask;
        return i;
    }

    void grow() {
        std::vector<Slot> larger(slots_.empty() ? 64 : 2 * slots_.size());
        for (Slot& old : slots_) {
            if (!old.entry)
                continue;
            std::size_t i = static_cast<std::size_t>(old.hash) & (larger.size() - 1);
            while (larger[i].entry)
                i = (i + 1) & (larger.size() - 1);
            larger[i] = std::move(old);
        }
        slots_ = std::move(larger);
    }

    std::vector<Slot> slots_; ///< a power of two of them, at most half of them taken
    std::size_t count_ = 0;
};

} // namespace Quillon::SaxEngine

#endif
