#include "layout/LayoutSolver.h"

#include "layout/BranchLengths.h"
#include "layout/TileIndex.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace kova {

namespace {

constexpr std::size_t index(LayoutAxis axis) {
    return static_cast<std::size_t>(axis);
}

double lengthAlong(LayoutAxis axis, CGSize size) {
    return axis == LayoutAxis::horizontal ? size.width : size.height;
}

/// The numbers that apply to the whole tree, limited so that results are finite.
struct SolveContext {
    std::array<double, 2> gap;               // by axis
    std::array<double, 2> minimumTileLength; // by axis
    double tileInset;

    SolveContext(const LayoutMetrics& metrics, double inset) :
        gap{gapBetweenBranches(LayoutAxis::horizontal, metrics.columnGutter),
            gapBetweenBranches(LayoutAxis::vertical, metrics.columnGutter)},
        minimumTileLength{usableMinimum(metrics.minimumTileSize.width), usableMinimum(metrics.minimumTileSize.height)},
        tileInset(usableLength(inset)) {}

    /// The length along the axis that a tile needs to hold a window of the observed minimum length.
    double minimumLengthOfTile(LayoutAxis axis, double observed) const {
        return std::max(usableMinimum(observed) + 2 * tileInset, minimumTileLength[index(axis)]);
    }
};

/// The part of the area that the root fills. In an area that is too small for margins and the last footer, the root
/// fills the whole area.
CGRect contentArea(CGSize area, double outerMargin) {
    const double margin = usableLength(outerMargin);
    const double width = std::floor(area.width - 2 * margin);
    const double height = std::floor(area.height - margin - (margin + kFooterHeight));
    return width > 0 && height > 0 ? makeRect(margin, margin, width, height) : makeRect(0, 0, area.width, area.height);
}

/// The divisor that normalizes frames; 1 for a length that is 0, or so small that quotients would not be finite.
CGSize normalizingSize(CGSize area) {
    const auto divisor = [](double length) { return std::abs(length) < 1e-200 ? 1 : length; };
    return {divisor(area.width), divisor(area.height)};
}

} // namespace

/// The nodes of the tree, level by level. The branches of a split are adjacent, so their weights and minimums are
/// contiguous. Every split precedes its branches, so minimums are added up from the last split to the first, and frames
/// are assigned from the first split to the last.
struct LayoutSolver::Scratch {
    struct Split {
        const LayoutSplit* split;
        std::uint32_t node;        // its index among the nodes
        std::uint32_t firstBranch; // the index of its first branch's node; the other branches follow
        std::uint32_t branchCount;
        LayoutAxis axis;
    };
    /// The place of a split in the tree, from which its id is derived.
    struct SplitPlace {
        std::size_t parent; // among the splits; kNoParent for the root
        std::size_t branch;
        std::size_t idOffset; // its split id within `splitIDs`
        std::size_t idLength;
    };
    static constexpr std::size_t kNoParent = SIZE_MAX;
    struct Tile {
        const LayoutTile* tile;
        std::uint32_t node;
    };
    /// How many tiles and dividers of the result belong to a node, and the index of the first of each.
    struct Extent {
        std::uint32_t tiles = 0;
        std::uint32_t dividers = 0;
        std::uint32_t firstTile = 0;
        std::uint32_t firstDivider = 0;
    };
    struct WindowMinimum {
        const SlotID* tileID;
        CGSize size;
        std::uint32_t tile; // TileIndex::kNone: no such tile
    };

    std::vector<Split> splits;
    std::vector<Tile> tiles;
    std::vector<SplitPlace> places; // of the splits; valid for the next solve if the tree has the same shape
    std::string splitIDs;

    // One entry per node; entries beyond `nodeCount` are kept only to reuse their memory.
    std::uint32_t nodeCount = 0;
    std::vector<double> weights;
    std::array<std::vector<double>, 2> minimums; // by axis
    std::vector<double> lengths;                 // of one split at a time
    std::vector<CGRect> frames;
    std::vector<Extent> extents;

    TileIndex tileIndex;
    std::vector<WindowMinimum> windowMinimums;
    std::vector<const SlotID*> unsatisfied;
    std::vector<std::set<SlotID>::node_type> spareEntries;
    BranchLengthsScratch branchLengths;

    void flatten(const LayoutNode& tree, const SolveContext& context);
    std::uint32_t addNodes(std::size_t count);
    void addNode(const LayoutNode& node, std::uint32_t at, std::size_t parent, std::size_t branch,
                 const SolveContext& context);
    void nameSplit(std::size_t split, std::size_t parent, std::size_t branch);
    void readWindowMinimums(const TileMinimumSizes& sizes, const SolveContext& context);
    void addUpBranches(const SolveContext& context);
    void layOutSplit(const Split& split, double gap, std::vector<LayoutDivider>& dividers);
    void writeDivider(const Split& split, std::uint32_t boundary, double gap, LayoutDivider& divider) const;
    void shareFramesOfEqualIDs();
    void writeSlots(CGSize area, SolvedLayout& result) const;
    void reportUnsatisfied(double tileInset, std::set<SlotID>& ids);
};

std::uint32_t LayoutSolver::Scratch::addNodes(std::size_t count) {
    const std::uint32_t first = nodeCount;
    nodeCount += static_cast<std::uint32_t>(count);
    if (nodeCount > weights.size()) {
        const std::size_t size = std::max<std::size_t>(nodeCount, 2 * weights.size());
        weights.resize(size);
        for (auto& ofAxis : minimums) ofAxis.resize(size);
        lengths.resize(size);
        frames.resize(size);
        extents.resize(size);
    }
    return first;
}

void LayoutSolver::Scratch::nameSplit(std::size_t split, std::size_t parent, std::size_t branch) {
    if (split < places.size() && places[split].parent == parent && places[split].branch == branch) return;
    // The tree has another shape than in the last solve, so all ids from this one on are computed again.
    places.resize(split);
    splitIDs.resize(split > 0 ? places.back().idOffset + places.back().idLength : 0);
    const std::size_t offset = splitIDs.size();
    if (parent == kNoParent) {
        splitIDs.append("root");
    } else {
        char digits[24];
        const auto end = std::to_chars(digits, digits + sizeof digits, branch).ptr;
        splitIDs.append(splitIDs, places[parent].idOffset, places[parent].idLength).append(1, '.').append(digits, end);
    }
    places.push_back({parent, branch, offset, splitIDs.size() - offset});
}

void LayoutSolver::Scratch::addNode(const LayoutNode& node, std::uint32_t at, std::size_t parent, std::size_t branch,
                                    const SolveContext& context) {
    if (const auto* tile = std::get_if<LayoutTile>(&node)) {
        tiles.push_back({tile, at});
        tileIndex.add(tile->id);
        extents[at] = {.tiles = 1};
        for (const auto axis : {LayoutAxis::horizontal, LayoutAxis::vertical}) {
            minimums[index(axis)][at] = context.minimumLengthOfTile(axis, 0);
        }
        return;
    }
    nameSplit(splits.size(), parent, branch);
    const auto& split = std::get<LayoutSplit>(node);
    splits.push_back({&split, at, 0, static_cast<std::uint32_t>(split.branches.size()), split.axis});
}

void LayoutSolver::Scratch::flatten(const LayoutNode& tree, const SolveContext& context) {
    splits.clear();
    tiles.clear();
    tileIndex.begin();
    nodeCount = 0;
    addNode(tree, addNodes(1), kNoParent, 0, context);
    for (std::size_t i = 0; i < splits.size(); ++i) {
        const auto& branches = splits[i].split->branches;
        const std::uint32_t first = addNodes(branches.size());
        splits[i].firstBranch = first;
        for (std::uint32_t k = 0; k < branches.size(); ++k) {
            weights[first + k] = usableWeight(branches[k].weight);
            addNode(branches[k].node, first + k, i, k, context);
        }
    }
    tileIndex.finish();
}

void LayoutSolver::Scratch::readWindowMinimums(const TileMinimumSizes& sizes, const SolveContext& context) {
    // The sizes usually come in the same order as in the last solve, so the tile that this entry had then is tried
    // first.
    if (windowMinimums.size() < sizes.size()) windowMinimums.resize(sizes.size(), {nullptr, {0, 0}, TileIndex::kNone});
    std::size_t count = 0;
    for (const auto& [id, size] : sizes) {
        WindowMinimum& entry = windowMinimums[count++];
        entry = {&id, size, tileIndex.find(id, entry.tile)};
        for (auto tile = entry.tile; tile != TileIndex::kNone; tile = tileIndex.nextWithSameID(tile)) {
            for (const auto axis : {LayoutAxis::horizontal, LayoutAxis::vertical}) {
                minimums[index(axis)][tiles[tile].node] = context.minimumLengthOfTile(axis, lengthAlong(axis, size));
            }
        }
    }
    windowMinimums.resize(count);
}

void LayoutSolver::Scratch::addUpBranches(const SolveContext& context) {
    for (auto split = splits.rbegin(); split != splits.rend(); ++split) {
        const std::uint32_t count = split->branchCount;
        const std::size_t along = index(split->axis);
        const double* minimumsAlong = minimums[along].data() + split->firstBranch;
        const double* minimumsAcross = minimums[1 - along].data() + split->firstBranch;
        const Extent* branches = extents.data() + split->firstBranch;
        Extent extent;
        double sum = 0;
        double largest = count > 0 ? minimumsAcross[0] : 0;
        for (std::uint32_t i = 0; i < count; ++i) {
            extent.tiles += branches[i].tiles;
            extent.dividers += branches[i].dividers;
            sum += minimumsAlong[i];
            largest = std::max(largest, minimumsAcross[i]);
        }
        if (count > 0) {
            extent.dividers += count - 1;
            sum += context.gap[along] * (count - 1);
        }
        extents[split->node] = extent;
        minimums[along][split->node] = sum;
        minimums[1 - along][split->node] = largest;
    }
}

void LayoutSolver::Scratch::writeDivider(const Split& split, std::uint32_t boundary, double gap,
                                         LayoutDivider& divider) const {
    const SplitPlace& place = places[static_cast<std::size_t>(&split - splits.data())];
    const CGRect& area = frames[split.node];
    const CGRect& before = frames[split.firstBranch + boundary];
    divider.splitID.assign(splitIDs, place.idOffset, place.idLength);
    divider.boundaryIndex = static_cast<int>(boundary);
    divider.axis = split.axis;
    divider.frame = split.axis == LayoutAxis::horizontal ? makeRect(maxX(before), minY(area), gap, area.size.height)
                                                         : makeRect(minX(area), maxY(before), area.size.width, gap);
    divider.branchLengths.resize(split.branchCount);
    divider.branchMinimumLengths.resize(split.branchCount);
    std::copy_n(lengths.data(), split.branchCount, divider.branchLengths.data());
    std::copy_n(minimums[index(split.axis)].data() + split.firstBranch, split.branchCount,
                divider.branchMinimumLengths.data());
}

void LayoutSolver::Scratch::layOutSplit(const Split& split, double gap, std::vector<LayoutDivider>& dividers) {
    const std::uint32_t count = split.branchCount;
    if (count == 0) return;
    const bool isRow = split.axis == LayoutAxis::horizontal;
    const CGRect area = frames[split.node];
    const double freeLength = std::max(roundedLength(lengthAlong(split.axis, area.size)) - gap * (count - 1), 0.0);
    const std::span<double> shared(lengths.data(), count);
    distribute({weights.data() + split.firstBranch, count},
               {minimums[index(split.axis)].data() + split.firstBranch, count}, freeLength, shared, branchLengths);
    roundToWholePoints(shared, freeLength, branchLengths);

    double cursor = isRow ? minX(area) : minY(area);
    CGRect* branchFrames = frames.data() + split.firstBranch;
    Extent* branchExtents = extents.data() + split.firstBranch;
    std::uint32_t nextTile = extents[split.node].firstTile;
    std::uint32_t nextDivider = extents[split.node].firstDivider;
    for (std::uint32_t i = 0; i < count; ++i) {
        branchFrames[i] = isRow ? makeRect(cursor, minY(area), shared[i], area.size.height)
                                : makeRect(minX(area), cursor, area.size.width, shared[i]);
        Extent& extent = branchExtents[i];
        extent.firstTile = nextTile;
        extent.firstDivider = nextDivider;
        nextTile += extent.tiles;
        nextDivider += extent.dividers;
        // The dividers within a branch precede the divider after the branch.
        if (i + 1 < count) writeDivider(split, i, gap, dividers[nextDivider++]);
        cursor += gap + shared[i];
    }
}

void LayoutSolver::Scratch::shareFramesOfEqualIDs() {
    const auto order = [this](std::uint32_t tile) { return extents[tiles[tile].node].firstTile; };
    for (std::uint32_t tile = 0; tile < tiles.size(); ++tile) {
        if (tileIndex.find(tiles[tile].tile->id) != tile) continue;
        std::uint32_t last = tile;
        for (auto other = tile; other != TileIndex::kNone; other = tileIndex.nextWithSameID(other)) {
            if (order(other) > order(last)) last = other;
        }
        const CGRect frame = frames[tiles[last].node];
        for (auto other = tile; other != TileIndex::kNone; other = tileIndex.nextWithSameID(other)) {
            frames[tiles[other].node] = frame;
        }
    }
}

void LayoutSolver::Scratch::writeSlots(CGSize area, SolvedLayout& result) const {
    const CGSize whole = normalizingSize(area);
    for (const Tile& tile : tiles) {
        const std::uint32_t at = extents[tile.node].firstTile;
        TileSlot& slot = result.slots[at];
        slot.id = tile.tile->id;
        slot.name = tile.tile->name;
        const CGRect& frame = frames[tile.node];
        slot.normalizedFrame = makeRect(frame.origin.x / whole.width, frame.origin.y / whole.height,
                                        frame.size.width / whole.width, frame.size.height / whole.height);
        result.frames[at] = frame;
    }
}

void LayoutSolver::Scratch::reportUnsatisfied(double tileInset, std::set<SlotID>& ids) {
    unsatisfied.clear();
    for (const WindowMinimum& entry : windowMinimums) {
        const bool holds =
            entry.tile != TileIndex::kNone && holdsWindow(frames[tiles[entry.tile].node], entry.size, tileInset);
        if (!holds) unsatisfied.push_back(entry.tileID);
    }
    const bool same =
        ids.size() == unsatisfied.size() &&
        std::all_of(unsatisfied.begin(), unsatisfied.end(), [&ids](const SlotID* id) { return ids.contains(*id); });
    if (same) return;
    while (!ids.empty()) spareEntries.push_back(ids.extract(ids.begin()));
    const auto longest =
        std::ranges::max_element(windowMinimums, {}, [](const auto& entry) { return entry.tileID->text().size(); });
    for (const SlotID* id : unsatisfied) {
        if (spareEntries.empty()) spareEntries.push_back(std::set<SlotID>{""}.extract(""));
        spareEntries.back().value() = *longest->tileID; // so that the entry has memory for any of the ids
        spareEntries.back().value() = *id;
        ids.insert(std::move(spareEntries.back()));
        spareEntries.pop_back();
    }
    spareEntries.reserve(spareEntries.size() + ids.size()); // so that extracting all ids later allocates nothing
}

LayoutSolver::LayoutSolver() : scratch_(std::make_unique<Scratch>()) {}
LayoutSolver::~LayoutSolver() = default;
LayoutSolver::LayoutSolver(LayoutSolver&&) noexcept = default;
LayoutSolver& LayoutSolver::operator=(LayoutSolver&&) noexcept = default;

void LayoutSolver::solve(const LayoutNode& tree, const TileMinimumSizes& minimumSizes, CGSize referenceSize,
                         const LayoutMetrics& metrics, double tileInset, SolvedLayout& result) {
    const SolveContext context(metrics, tileInset);
    const CGSize area{usableLength(referenceSize.width), usableLength(referenceSize.height)};
    Scratch& scratch = *scratch_;
    scratch.flatten(tree, context);
    scratch.readWindowMinimums(minimumSizes, context);
    scratch.addUpBranches(context);

    result.slots.resize(scratch.tiles.size());
    result.frames.resize(scratch.tiles.size());
    result.dividers.resize(scratch.extents[0].dividers);
    scratch.frames[0] = contentArea(area, metrics.outerMargin);
    for (const auto& split : scratch.splits) {
        scratch.layOutSplit(split, context.gap[index(split.axis)], result.dividers);
    }
    if (scratch.tileIndex.hasDuplicates()) scratch.shareFramesOfEqualIDs();
    scratch.writeSlots(area, result);
    scratch.reportUnsatisfied(context.tileInset, result.unsatisfiedTileIDs);
}

bool areEqual(const TileMinimumSizes& a, const TileMinimumSizes& b) {
    // Maps that were filled in the same order also list their entries in the same order. For these, no id is hashed.
    return a.size() == b.size() && (std::equal(a.begin(), a.end(), b.begin()) || a == b);
}

bool holdsWindow(const CGRect& frame, CGSize minimumSize, double tileInset) {
    return minimumSize.width - kMinimumFitTolerance <= frame.size.width - 2 * tileInset &&
           minimumSize.height - kMinimumFitTolerance <= frame.size.height - 2 * tileInset;
}

SolvedLayout solveSlots(const LayoutNode& tree, const TileMinimumSizes& minimumSizes, CGSize referenceSize,
                        const LayoutMetrics& metrics, double tileInset) {
    SolvedLayout result;
    LayoutSolver().solve(tree, minimumSizes, referenceSize, metrics, tileInset, result);
    return result;
}

std::optional<std::vector<double>> draggedWeights(const LayoutDivider& divider, double translationPoints) {
    const auto& minimums = divider.branchMinimumLengths;
    std::vector<double> lengths = divider.branchLengths;
    if (divider.boundaryIndex < 0 || minimums.size() != lengths.size()) return std::nullopt;
    const auto first = static_cast<std::size_t>(divider.boundaryIndex);
    const std::size_t second = first + 1;
    if (second >= lengths.size()) return std::nullopt;

    const double pair = lengths[first] + lengths[second];
    const double lower = minimums[first];
    const double upper = pair - minimums[second];
    const double requested = lengths[first] + translationPoints;
    if (!(lower <= upper) || std::isnan(requested)) return std::nullopt;
    lengths[first] = std::min(upper, std::max(lower, requested));
    lengths[second] = pair - lengths[first];
    std::transform(lengths.begin(), lengths.end(), lengths.begin(), raisedToFloor);
    return lengths;
}

} // namespace kova
