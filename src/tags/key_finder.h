// Finds numbered keys where chains have grown long, because many keys fall into one bucket.
//
// All identifiers lie in a table with open addressing, by a hash of the whole key, and the last identifier of
// each chain is at hand, so that neither searching nor appending walks along a chain. Invariants: the chains
// are those that they would be without a finder; slots are a power of two, of which at most three quarters
// are taken, or none at all. A finder that memory does not suffice for is given up, and not built again
// before the keys are twice as many. Cost: constant time on the average, for any keys, because nobody who
// chooses them knows the salt of the hash; 5 to 16 bytes per key, and 4 per bucket.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "common/array.h"
#include "common/prefetch.h"

namespace korvane {

/// `Key` is as for the major set; `Keys` are its numbered keys.
template <class Key, class Keys>
class KeyFinder {
  public:
    using value_type = typename Key::value_type;

    /// Without a finder, its users walk along the chains; the members below `build` are not for them then.
    [[nodiscard]] bool is_built() const { return !slots.empty(); }

    /// Builds it anew for all keys, if memory suffices and it is time to try.
    template <class BucketOf>
    void build(const Keys &keys, uint32_t bucket_count, BucketOf bucket_of)
    {
        if (keys.count < least_count)
            return;
        Array<int32_t> ends;
        if (!ends.try_resize_zeroed(bucket_count) ||
            !try_enter(keys, 2 * static_cast<std::size_t>(keys.count))) {
            give_up(keys.count);
            return;
        }
        for (int32_t identifier = 1; identifier <= keys.count; ++identifier)
            ends[bucket_of(keys.key(identifier))] = identifier; // the last of each stays
        last = std::move(ends);
    }

    /// Makes room for more keys. False if there is no finder (any more).
    [[nodiscard]] bool try_make_room(const Keys &keys, std::size_t more)
    {
        if (!is_built())
            return false;
        const std::size_t key_count = static_cast<std::size_t>(keys.count) + more;
        if (key_count <= slots.size() / 4 * 3 || try_enter(keys, 2 * key_count))
            return true;
        give_up(keys.count);
        return false;
    }

    /// The identifier of a key, or 0 if absent.
    [[nodiscard]] int32_t find(const Keys &keys, const value_type &key) const
    {
        return slots[slot_of(keys, key, first_slot(key))];
    }

    /// The identifier of a key, which is appended to the chain of its bucket if absent; 0 if memory runs out.
    /// There must be room, and the search starts at the first slot of the key.
    [[nodiscard]] int32_t insert(
        Keys &keys, Array<int32_t> &heads, uint32_t bucket, const value_type &key, std::size_t first)
    {
        int32_t &slot = slots[slot_of(keys, key, first)];
        if (slot == 0 && (slot = keys.append(heads[bucket], key, last[bucket])) != 0)
            last[bucket] = slot;
        return slot;
    }

    /// The slot where the search for a key starts.
    [[nodiscard]] std::size_t first_slot(const value_type &key) const
    {
        return static_cast<std::size_t>(mixed(Key::packed(key) ^ salt)) & (slots.size() - 1);
    }

    /// The identifier in a slot, or 0.
    [[nodiscard]] int32_t at(std::size_t slot) const { return slots[slot]; }

    void prefetch_for(std::size_t slot, uint32_t bucket) const
    {
        prefetch(&slots[slot]);
        prefetch(&last[bucket]);
    }

  private:
    Array<int32_t> slots; // each an identifier, or 0
    Array<int32_t> last;  // the last identifier of each bucket, or 0
    uint64_t salt = 0;
    int32_t least_count = 0; // of keys, to be built

    /// Source: D. Stafford, "Better bit mixing: improving on MurmurHash3's 64-bit finalizer" (2011), mix 13.
    static constexpr uint64_t mixed(uint64_t bits)
    {
        bits = (bits ^ (bits >> 30)) * 0xbf58476d1ce4e5b9;
        bits = (bits ^ (bits >> 27)) * 0x94d049bb133111eb;
        return bits ^ (bits >> 31);
    }

    /// Where a key is, or the free slot to which it belongs.
    [[nodiscard]] std::size_t slot_of(const Keys &keys, const value_type &key, std::size_t slot) const
    {
        while (slots[slot] != 0 && !Key::equal(keys.key(slots[slot]), key))
            slot = (slot + 1) & (slots.size() - 1);
        return slot;
    }

    /// Enters all keys into a fresh table of at least so many slots. False, without change, if memory runs
    /// out.
    [[nodiscard]] bool try_enter(const Keys &keys, std::size_t slot_count)
    {
        Array<int32_t> fresh;
        if (!fresh.try_resize_zeroed(std::bit_ceil(slot_count)))
            return false;
        slots = std::move(fresh);
        // Where a block lies is what no file and no client can foresee.
        salt = mixed(reinterpret_cast<uintptr_t>(slots.data()));
        for (int32_t identifier = 1; identifier <= keys.count; ++identifier) {
            std::size_t slot = first_slot(keys.key(identifier));
            while (slots[slot] != 0)
                slot = (slot + 1) & (slots.size() - 1);
            slots[slot] = identifier;
        }
        return true;
    }

    void give_up(int32_t key_count)
    {
        slots.clear();
        last.clear();
        least_count = key_count > INT32_MAX / 2 ? INT32_MAX : 2 * key_count;
    }
};

} // namespace korvane
