#include "layout/LayoutSolver.h"

#include "layout/BranchLengths.h"
#include "layout/TileIndex.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace kova {

namespace {

/// The numbers of a solve, made usable once.
struct SolveContext {
    std::array<double, 2> gap;               // by axis
    std::array<double, 2> minimumTileLength; // by axis
    double tileInset;

    SolveContext(const LayoutMetrics& metrics, double inset) :
        gap{gapBetweenBranches(LayoutAxis::horizontal, metrics.columnGutter),
            gapBetweenBranches(LayoutAxis::vertical, metrics.columnGutter)},
        minimumTileLength{usableMinimum(metrics.minimumTileSize.width), usableMinimum(metrics.minimumTileSize.height)},
        tileInset(usableLength(inset)) {}
};

constexpr std::size_t index(LayoutAxis axis) {
    return static_cast<std::size_t>(axis);
}

double lengthAlong(LayoutAxis axis, CGSize size) {
    return axis == LayoutAxis::horizontal ? size.width : size.height;
}

/// The part of the area that the root fills. An area too small for its margins loses them, and the last footer too.
CGRect contentArea(CGSize area, double outerMargin) {
    const double margin = usableLength(outerMargin);
    const double width = std::floor(area.width - 2 * margin);
    const double height = std::floor(area.height - margin - (margin + kTileFooterAllowance));
    return width > 0 && height > 0 ? makeRect(margin, margin, width, height) : makeRect(0, 0, area.width, area.height);
}

/// By what frames are divided to normalize them; an extent of nothing, or of so little that quotients would not be
/// finite, counts as 1.
CGSize normalizingSize(CGSize area) {
    const auto divisor = [](double length) { return std::abs(length) < 1e-200 ? 1 : length; };
    return {divisor(area.width), divisor(area.height)};
}

} // namespace

/// The tree level by level: the branches of a split lie side by side, so that its weights and minimums are spans, and
/// every split comes before what is in it. Minimums are added up backwards, frames are dealt out forwards.
struct LayoutSolver::Scratch {
    struct Split {
        const LayoutSplit* split;
        std::uint32_t node;        // its place among the nodes
        std::uint32_t firstBranch; // the nodes of its branches follow each other from here
        std::size_t idOffset;      // its split id within `splitIDs`
        std::size_t idLength;

        std::uint32_t branchCount() const { return static_cast<std::uint32_t>(split->branches.size()); }
    };
    struct Tile {
        const LayoutTile* tile;
        std::uint32_t node;
    };
    /// How much of the result lies under a node, and where it begins.
    struct Extent {
        std::uint32_t tiles = 0;
        std::uint32_t dividers = 0;
        std::uint32_t firstTile = 0;
        std::uint32_t firstDivider = 0;
    };
    struct WindowMinimum {
        const std::string* tileID;
        CGSize size;
        std::uint32_t tile; // TileIndex::kNone: no such tile
    };

    std::vector<Split> splits;
    std::vector<Tile> tiles;
    std::string splitIDs;

    // One entry per node, those beyond `nodeCount` kept for their memory.
    std::uint32_t nodeCount = 0;
    std::vector<double> weights;
    std::array<std::vector<double>, 2> minimums; // by axis
    std::vector<double> lengths;                 // of one split at a time
    std::vector<CGRect> frames;
    std::vector<Extent> extents;

    TileIndex tileIndex;
    std::vector<WindowMinimum> windowMinimums;
    std::vector<const std::string*> unsatisfied;
    std::vector<std::set<std::string>::node_type> spareEntries;
    BranchLengthsScratch branchLengths;

    void flatten(const LayoutNode& tree, const SolveContext& context);
    std::uint32_t addNodes(std::size_t count);
    void addNode(const LayoutNode& node, std::uint32_t at, const Split* parent, std::size_t branch,
                 const SolveContext& context);
    void readWindowMinimums(const TileMinimumSizes& sizes, const SolveContext& context);
    void addUpBranches(const SolveContext& context);
    void layOutSplit(const Split& split, double gap, std::vector<LayoutDivider>& dividers);
    void writeDivider(const Split& split, std::uint32_t boundary, double gap, LayoutDivider& divider);
    void shareFramesOfEqualIDs();
    void writeSlots(CGSize area, SolvedLayout& result) const;
    void reportUnsatisfied(double tileInset, std::set<std::string>& ids);
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

void LayoutSolver::Scratch::addNode(const LayoutNode& node, std::uint32_t at, const Split* parent, std::size_t branch,
                                    const SolveContext& context) {
    if (const auto* tile = std::get_if<LayoutTile>(&node)) {
        tiles.push_back({tile, at});
        tileIndex.add(tile->id);
        extents[at] = {.tiles = 1};
        for (const auto axis : {LayoutAxis::horizontal, LayoutAxis::vertical}) {
            minimums[index(axis)][at] =
                minimumLengthOfTile(0, context.minimumTileLength[index(axis)], context.tileInset);
        }
        return;
    }
    const std::size_t idOffset = splitIDs.size();
    if (parent) {
        char digits[24];
        const auto end = std::to_chars(digits, digits + sizeof digits, branch).ptr;
        splitIDs.append(splitIDs, parent->idOffset, parent->idLength).append(1, '.').append(digits, end);
    } else {
        splitIDs.append("root");
    }
    splits.push_back({std::get_if<LayoutSplit>(&node), at, 0, idOffset, splitIDs.size() - idOffset});
}

void LayoutSolver::Scratch::flatten(const LayoutNode& tree, const SolveContext& context) {
    splits.clear();
    tiles.clear();
    splitIDs.clear();
    tileIndex.begin();
    nodeCount = 0;
    branchLengths.visits = 0;
    addNode(tree, addNodes(1), nullptr, 0, context);
    for (std::size_t i = 0; i < splits.size(); ++i) {
        const auto& branches = splits[i].split->branches;
        splits[i].firstBranch = addNodes(branches.size());
        branchLengths.visits += branches.size();
        const Split parent = splits[i]; // a copy: the vector grows
        for (std::uint32_t k = 0; k < branches.size(); ++k) {
            weights[parent.firstBranch + k] = usableWeight(branches[k].weight);
            addNode(branches[k].node, parent.firstBranch + k, &parent, k, context);
        }
    }
    tileIndex.finish();
}

void LayoutSolver::Scratch::readWindowMinimums(const TileMinimumSizes& sizes, const SolveContext& context) {
    // The sizes of the last solve come back in the same order, so the tile of then is the best guess.
    if (windowMinimums.size() < sizes.size()) windowMinimums.resize(sizes.size(), {nullptr, {0, 0}, TileIndex::kNone});
    std::size_t count = 0;
    for (const auto& [id, size] : sizes) {
        WindowMinimum& entry = windowMinimums[count++];
        entry = {&id, size, tileIndex.find(id, entry.tile)};
        for (auto tile = entry.tile; tile != TileIndex::kNone; tile = tileIndex.nextWithSameID(tile)) {
            for (const auto axis : {LayoutAxis::horizontal, LayoutAxis::vertical}) {
                minimums[index(axis)][tiles[tile].node] = minimumLengthOfTile(
                    lengthAlong(axis, size), context.minimumTileLength[index(axis)], context.tileInset);
            }
        }
    }
    windowMinimums.resize(count);
}

void LayoutSolver::Scratch::addUpBranches(const SolveContext& context) {
    for (auto split = splits.rbegin(); split != splits.rend(); ++split) {
        const std::uint32_t count = split->branchCount();
        const std::uint32_t end = split->firstBranch + count;
        branchLengths.visits += count;
        Extent extent;
        extent.dividers = count > 0 ? count - 1 : 0;
        const std::size_t along = index(split->split->axis);
        const std::size_t across = 1 - along;
        double sum = 0;
        double largest = count > 0 ? minimums[across][split->firstBranch] : 0;
        for (std::uint32_t branch = split->firstBranch; branch < end; ++branch) {
            extent.tiles += extents[branch].tiles;
            extent.dividers += extents[branch].dividers;
            sum += minimums[along][branch];
            largest = std::max(largest, minimums[across][branch]);
        }
        extents[split->node] = extent;
        minimums[along][split->node] = count > 0 ? sum + context.gap[along] * (count - 1) : 0;
        minimums[across][split->node] = largest;
    }
}

void LayoutSolver::Scratch::writeDivider(const Split& split, std::uint32_t boundary, double gap,
                                         LayoutDivider& divider) {
    const LayoutAxis axis = split.split->axis;
    const CGRect& area = frames[split.node];
    const CGRect& before = frames[split.firstBranch + boundary];
    divider.splitID.assign(splitIDs, split.idOffset, split.idLength);
    divider.boundaryIndex = static_cast<int>(boundary);
    divider.axis = axis;
    divider.frame = axis == LayoutAxis::horizontal ? makeRect(maxX(before), minY(area), gap, area.size.height)
                                                   : makeRect(minX(area), maxY(before), area.size.width, gap);
    const auto minimumsOfBranches = minimums[index(axis)].begin() + split.firstBranch;
    divider.branchLengths.assign(lengths.begin(), lengths.begin() + split.branchCount());
    divider.branchMinimumLengths.assign(minimumsOfBranches, minimumsOfBranches + split.branchCount());
}

void LayoutSolver::Scratch::layOutSplit(const Split& split, double gap, std::vector<LayoutDivider>& dividers) {
    const std::uint32_t count = split.branchCount();
    if (count == 0) return;
    branchLengths.visits += count;
    const LayoutAxis axis = split.split->axis;
    const CGRect area = frames[split.node];
    const double freeLength = std::max(roundedLength(lengthAlong(axis, area.size)) - gap * (count - 1), 0.0);
    const std::span<double> shared(lengths.data(), count);
    distribute({weights.data() + split.firstBranch, count}, {minimums[index(axis)].data() + split.firstBranch, count},
               freeLength, shared, branchLengths);
    roundToWholePoints(shared, freeLength, branchLengths);

    double cursor = axis == LayoutAxis::horizontal ? minX(area) : minY(area);
    std::uint32_t nextTile = extents[split.node].firstTile;
    std::uint32_t nextDivider = extents[split.node].firstDivider;
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint32_t branch = split.firstBranch + i;
        frames[branch] = axis == LayoutAxis::horizontal ? makeRect(cursor, minY(area), shared[i], area.size.height)
                                                        : makeRect(minX(area), cursor, area.size.width, shared[i]);
        extents[branch].firstTile = nextTile;
        extents[branch].firstDivider = nextDivider;
        nextTile += extents[branch].tiles;
        nextDivider += extents[branch].dividers;
        // The dividers within a branch come before the one that follows it.
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

void LayoutSolver::Scratch::reportUnsatisfied(double tileInset, std::set<std::string>& ids) {
    unsatisfied.clear();
    for (const WindowMinimum& entry : windowMinimums) {
        const bool holds =
            entry.tile != TileIndex::kNone && holdsWindow(frames[tiles[entry.tile].node], entry.size, tileInset);
        if (!holds) unsatisfied.push_back(entry.tileID);
    }
    const bool same =
        ids.size() == unsatisfied.size() && std::all_of(unsatisfied.begin(), unsatisfied.end(),
                                                        [&ids](const std::string* id) { return ids.contains(*id); });
    if (same) return;
    while (!ids.empty()) spareEntries.push_back(ids.extract(ids.begin()));
    std::size_t longestID = 0;
    for (const WindowMinimum& entry : windowMinimums) longestID = std::max(longestID, entry.tileID->size());
    for (const std::string* id : unsatisfied) {
        if (spareEntries.empty()) spareEntries.push_back(std::set<std::string>{""}.extract(""));
        spareEntries.back().value().reserve(longestID); // so that it can hold any of them from now on
        spareEntries.back().value() = *id;
        ids.insert(std::move(spareEntries.back()));
        spareEntries.pop_back();
    }
    spareEntries.reserve(spareEntries.size() + ids.size()); // room to take them all out again
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
        scratch.layOutSplit(split, context.gap[index(split.split->axis)], result.dividers);
    }
    if (scratch.tileIndex.hasDuplicates()) scratch.shareFramesOfEqualIDs();
    scratch.writeSlots(area, result);
    scratch.reportUnsatisfied(context.tileInset, result.unsatisfiedTileIDs);
}

bool holdsWindow(const CGRect& frame, CGSize minimumSize, double tileInset) {
    return minimumSize.width - kMinimumFitTolerance <= frame.size.width - 2 * tileInset &&
           minimumSize.height - kMinimumFitTolerance <= frame.size.height - 2 * tileInset;
}

std::size_t LayoutSolver::branchVisits() const {
    return scratch_->branchLengths.visits;
}

SolvedLayout solveSlots(const LayoutNode& tree, const TileMinimumSizes& minimumSizes, CGSize referenceSize,
                        const LayoutMetrics& metrics, double tileInset) {
    SolvedLayout result;
    LayoutSolver().solve(tree, minimumSizes, referenceSize, metrics, tileInset, result);
    return result;
}

double minimumLength(const LayoutNode& node, LayoutAxis axis, const TileMinimumSizes& minimumSizes,
                     const LayoutMetrics& metrics, double tileInset) {
    if (const auto* tile = std::get_if<LayoutTile>(&node)) {
        const auto observed = minimumSizes.find(tile->id);
        return minimumLengthOfTile(observed == minimumSizes.end() ? 0 : lengthAlong(axis, observed->second),
                                   lengthAlong(axis, metrics.minimumTileSize), tileInset);
    }
    const auto& split = std::get<LayoutSplit>(node);
    if (split.branches.empty()) return 0;
    double sum = 0;
    double largest = -std::numeric_limits<double>::infinity();
    for (const auto& branch : split.branches) {
        const double length = minimumLength(branch.node, axis, minimumSizes, metrics, tileInset);
        sum += length;
        largest = std::max(largest, length);
    }
    if (split.axis != axis) return largest;
    return sum + gapBetweenBranches(axis, metrics.columnGutter) * static_cast<double>(split.branches.size() - 1);
}

std::vector<double> distributeLengths(std::span<const double> weights, std::span<const double> minimums,
                                      double available) {
    const std::size_t count = std::max(weights.size(), minimums.size());
    std::vector<double> usableWeights(count, kWeightFloor);
    std::vector<double> usableMinimums(count, 0);
    std::transform(weights.begin(), weights.end(), usableWeights.begin(), usableWeight);
    std::transform(minimums.begin(), minimums.end(), usableMinimums.begin(), usableMinimum);
    std::vector<double> lengths(count);
    BranchLengthsScratch scratch;
    distribute(usableWeights, usableMinimums, usableLength(available), lengths, scratch);
    return lengths;
}

std::vector<double> roundLengths(std::span<const double> lengths, double available) {
    std::vector<double> rounded(lengths.size());
    std::transform(lengths.begin(), lengths.end(), rounded.begin(), usableLength);
    BranchLengthsScratch scratch;
    roundToWholePoints(rounded, usableLength(available), scratch);
    return rounded;
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
    const double wished = lengths[first] + translationPoints;
    if (!(lower <= upper) || std::isnan(wished)) return std::nullopt;
    lengths[first] = std::min(upper, std::max(lower, wished));
    lengths[second] = pair - lengths[first];
    std::transform(lengths.begin(), lengths.end(), lengths.begin(), raisedToFloor);
    return lengths;
}

} // namespace kova
