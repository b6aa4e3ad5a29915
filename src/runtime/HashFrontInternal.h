#ifndef ZUTARNEX_RUNTIME_HASHFRONTINTERNAL_H
#define ZUTARNEX_RUNTIME_HASHFRONTINTERNAL_H

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace Quillon::Runtime {

/// A hash of `byteCount` bytes, never 0. They are taken eight at a time, the last eight over again where they overlap, so
/// that the end costs no loop of its own.
inline std::uint32_t frontHashOf(const void* bytes, std::size_t byteCount) noexcept {
    constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15; // 2^64 over the golden ratio
    constexpr std::size_t kWord = sizeof(std::uint64_t);
    const auto* at = static_cast<const unsigned char*>(bytes);
    std::uint64_t hash = byteCount;
    const auto mix = [&hash](std::uint64_t word) {
        hash = (hash ^ word) * kFactor;
        hash ^= hash >> 32;
    };
    const auto mixWordAt = [&mix](const unsigned char* place) {
        std::uint64_t word = 0;
        std::memcpy(&word, place, kWord);
        mix(word);
    };
    if (byteCount < kWord) {
        std::uint64_t word = 0;
        for (std::size_t i = 0; i < byteCount; ++i)
            word = word << 8 | at[i];
        mix(word);
    } else {
        const unsigned char* const last = at + byteCount - kWord;
        for (; at < last; at += kWord)
            mixWordAt(at);
        mixWordAt(last);
    }
    // Once more: the last bytes have reached the upper bits only.
    return static_cast<std::uint32_t>(hash * kFactor >> 32) | 1U << 31;
}

/// Pointers to entries by their hash, in front of an ordered index that holds the entries, too: the front is asked first,
/// and what it does not know is left to the index.
///
///     slot  0      1      2      3      4      5      6      7
///         +------+------+------+------+------+------+------+------+
///         |  -   | ...1 | ...9 |  -   | ...4 |  -   |  -   | ...7 |    last digits of the hashes
///         +------+------+------+------+------+------+------+------+
///
/// An entry stands in the slot that its hash names or in one of the next; one that would stand too far away is not put
/// in, so that names that are chosen to collide cost no more than the index does.
///
/// Ownership: the slots belong to the user, who allocates them, all null; the entries, too.
/// REQUIRES:  Entry has a member `hash`, as frontHashOf() gives it; entries stay where they are and are never taken out.
template <class Entry>
class HashFront {
public:
    /// Slots for up to `entryCount` entries: at least half of them stay free.
    static std::size_t slotCountFor(std::size_t entryCount) noexcept { return std::bit_ceil(entryCount * 2); }

    /// `slotCount` is a result of slotCountFor().
    HashFront(Entry** slots, std::size_t slotCount) noexcept : slots_(slots), mask_(slotCount - 1) {}

    /// The entry of that hash for which isSame(entry) holds, or null.
    template <class IsSame>
    Entry* find(std::uint32_t hash, IsSame isSame) const noexcept {
        Entry* const* const slot = placeFor(hash, isSame);
        return slot != nullptr ? *slot : nullptr;
    }

    /// Puts an entry in, in the place of one that is the same.
    template <class IsSame>
    void put(Entry& entry, IsSame isSame) noexcept {
        Entry** const slot = placeFor(entry.hash, isSame);
        if (slot != nullptr)
            *slot = &entry;
        else
            leaveOut();
    }

    /// Remembers that the index holds an entry that is not here.
    void leaveOut() noexcept { holdsAll_ = false; }
    /// Whether the index holds no entry that is not here.
    bool holdsAll() const noexcept { return holdsAll_; }

private:
    static constexpr std::size_t kReach = 16;

    /// Where the entry stands or would stand; null where neither can be.
    template <class IsSame>
    Entry** placeFor(std::uint32_t hash, IsSame isSame) const noexcept {
        for (std::size_t i = 0; i < kReach; ++i) {
            Entry** const slot = slots_ + ((hash + i) & mask_);
            if (*slot == nullptr || ((*slot)->hash == hash && isSame(**slot)))
                return slot;
        }
        return nullptr;
    }

    Entry** slots_;
    std::size_t mask_;
    bool holdsAll_ = true;
};

} // namespace Quillon::Runtime

#endif
