#include "layout/TileIndex.h"

#include <bit>
#include <functional>

namespace kova {

namespace {

std::size_t hashOf(const SlotID& id) {
    return std::hash<SlotID>{}(id);
}

} // namespace

void TileIndex::begin() {
    count_ = 0;
    changed_ = false;
}

void TileIndex::finish() {
    if (!changed_ && count_ == indexed_) return;
    indexed_ = count_;
    hasDuplicates_ = false;
    next_.assign(count_, kNone);
    buckets_.assign(std::bit_ceil(std::size_t{count_} * 2 + 1), kNone);
    // From the last to the first, so that each id's chain begins with its first tile.
    for (std::uint32_t tile = count_; tile-- > 0;) {
        std::uint32_t& first = bucket(ids_[tile]);
        next_[tile] = first;
        hasDuplicates_ = hasDuplicates_ || first != kNone;
        first = tile;
    }
}

std::uint32_t TileIndex::lookUp(const SlotID& id) const {
    const std::size_t mask = buckets_.size() - 1;
    for (std::size_t at = hashOf(id) & mask; buckets_[at] != kNone; at = (at + 1) & mask) {
        if (ids_[buckets_[at]] == id) return buckets_[at];
    }
    return kNone;
}

std::uint32_t& TileIndex::bucket(const SlotID& id) {
    const std::size_t mask = buckets_.size() - 1;
    std::size_t at = hashOf(id) & mask;
    while (buckets_[at] != kNone && ids_[buckets_[at]] != id) at = (at + 1) & mask;
    return buckets_[at];
}

} // namespace kova
