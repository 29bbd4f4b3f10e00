// Finds the tiles of a tree by their ids. Successive trees usually have the same ids; then each lookup costs one
// comparison, and nothing is hashed or allocated.
#pragma once

#include "support/Identifiers.h"

#include <cstdint>
#include <vector>

namespace kova {

class TileIndex {
  public:
    static constexpr std::uint32_t kNone = UINT32_MAX;

    /// Forgets the tiles; call `add` for each tile of the tree, then `finish`.
    void begin();
    void add(const SlotID& id) {
        if (count_ == ids_.size()) {
            ids_.emplace_back(id);
            changed_ = true;
        } else if (ids_[count_] != id) {
            ids_[count_] = id;
            changed_ = true;
        }
        ++count_;
    }
    void finish();

    /// The first tile with the id, in the order of `add`; kNone when there is none. `guess` is tried first.
    std::uint32_t find(const SlotID& id, std::uint32_t guess = kNone) const {
        return guess < count_ && ids_[guess] == id && !hasDuplicates_ ? guess : lookUp(id);
    }
    /// The next tile with the id of this one, or kNone.
    std::uint32_t nextWithSameID(std::uint32_t tile) const { return next_[tile]; }
    bool hasDuplicates() const { return hasDuplicates_; }

  private:
    std::uint32_t lookUp(const SlotID& id) const;
    std::uint32_t& bucket(const SlotID& id);

    std::vector<SlotID> ids_; // entries beyond `count_` are kept only to reuse their memory
    std::vector<std::uint32_t> next_;
    std::vector<std::uint32_t> buckets_; // open addressing; the size is a power of two, at least twice the tile count
    std::uint32_t count_ = 0;
    std::uint32_t indexed_ = kNone; // tiles at the last `finish`; kNone before the first
    bool changed_ = false;
    bool hasDuplicates_ = false;
};

} // namespace kova
