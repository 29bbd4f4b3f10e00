// Compares the layout engine with its arithmetic alone. The benchmark `Floor` is that arithmetic: it divides the same
// balanced trees with the same minimum sizes, but in plain arrays of numbers, without names, slots or dividers.
// `Solver` and `Display` measure the engine; their counter "ratio" says how many times longer than `Floor` they take.
#include "layout/LayoutCatalogue.h"
#include "layout/TileSpans.h"
#include "workspace/DisplayLayouts.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace kova;

constexpr int kWidth = 2560, kHeight = 1440, kGap = 8;

/// Returns two widths alternately, so that the engine cannot reuse the result of the call before.
int nextWidth(int& calls) {
    return kWidth - (++calls & 1);
}

/// Every fifth tile has a minimum size of more than a point. The share of the tile is larger still, with 6 to 1000
/// tiles.
CGSize minimumOfTile(int tile, int tiles) {
    return tile % 5 == 0 ? CGSize{static_cast<double>(3600 / tiles), static_cast<double>(1800 / tiles)} : CGSize{1, 1};
}

/// A balanced tree of splits with two branches each. A node is followed by its first branch.
class FloorTree {
  public:
    explicit FloorTree(int tiles) {
        build(tiles, 0);
        frames_.resize(nodes_.size());
        minimumWidths_.resize(nodes_.size());
        minimumHeights_.resize(nodes_.size());
        for (int i = 0; i < tiles; ++i) tileMinimums_.push_back(minimumOfTile(i, tiles));
    }

    void solve(int width, int height) {
        addUpMinimums();
        frames_[0] = {0, 0, width, height};
        for (std::size_t i = 0; i < nodes_.size(); ++i) {
            const Node& node = nodes_[i];
            if (node.second == 0) continue;
            const std::size_t a = i + 1, b = static_cast<std::size_t>(node.second);
            const Frame r = frames_[i];
            const int space = (node.isHorizontal ? r.width : r.height) - kGap;
            const int low = node.isHorizontal ? minimumWidths_[a] : minimumHeights_[a];
            const int high = space - (node.isHorizontal ? minimumWidths_[b] : minimumHeights_[b]);
            int first = static_cast<int>(static_cast<float>(space) * node.ratio);
            first = high < low ? first : std::clamp(first, low, high);
            frames_[a] = frames_[b] = r;
            if (node.isHorizontal) {
                frames_[a].width = first;
                frames_[b].x = r.x + first + kGap;
                frames_[b].width = r.width - kGap - first;
            } else {
                frames_[a].height = first;
                frames_[b].y = r.y + first + kGap;
                frames_[b].height = r.height - kGap - first;
            }
        }
        benchmark::DoNotOptimize(frames_.data());
        benchmark::ClobberMemory();
    }

  private:
    struct Node {
        std::int32_t second = 0; // index of the second branch; 0 for a tile
        std::int32_t tile = -1;  // number of the tile; -1 for a split
        float ratio = 0.5F;      // share of the first branch
        bool isHorizontal = true;
    };
    struct Frame {
        int x, y, width, height;
    };

    int build(int tiles, int depth) {
        const auto at = nodes_.size();
        nodes_.emplace_back();
        if (tiles == 1) {
            nodes_[at].tile = tiles_++;
            return static_cast<int>(at);
        }
        build(tiles - tiles / 2, depth + 1);
        const int second = build(tiles / 2, depth + 1);
        nodes_[at].second = second;
        nodes_[at].isHorizontal = depth % 2 == 0;
        nodes_[at].ratio = static_cast<float>(tiles - tiles / 2) / static_cast<float>(tiles);
        return static_cast<int>(at);
    }

    void addUpMinimums() {
        for (std::size_t i = nodes_.size(); i-- > 0;) {
            const Node& node = nodes_[i];
            if (node.second == 0) {
                const CGSize& size = tileMinimums_[static_cast<std::size_t>(node.tile)];
                minimumWidths_[i] = static_cast<int>(size.width);
                minimumHeights_[i] = static_cast<int>(size.height);
                continue;
            }
            const std::size_t a = i + 1, b = static_cast<std::size_t>(node.second);
            const auto& w = minimumWidths_;
            const auto& h = minimumHeights_;
            minimumWidths_[i] = node.isHorizontal ? w[a] + kGap + w[b] : std::max(w[a], w[b]);
            minimumHeights_[i] = node.isHorizontal ? std::max(h[a], h[b]) : h[a] + kGap + h[b];
        }
    }

    std::vector<Node> nodes_;
    std::vector<Frame> frames_;
    std::vector<int> minimumWidths_, minimumHeights_;
    std::vector<CGSize> tileMinimums_;
    int tiles_ = 0;
};

SlotID tileID(int tile) {
    return SlotID("tile-" + std::to_string(tile));
}

LayoutNode balancedTree(int tiles, int firstTile, LayoutAxis axis) {
    if (tiles == 1) return LayoutTile{tileID(firstTile), tileID(firstTile).text()};
    const int before = tiles - tiles / 2;
    const LayoutAxis next = axis == LayoutAxis::horizontal ? LayoutAxis::vertical : LayoutAxis::horizontal;
    return LayoutSplit{axis,
                       {{static_cast<double>(before), balancedTree(before, firstTile, next)},
                        {static_cast<double>(tiles - before), balancedTree(tiles - before, firstTile + before, next)}}};
}

/// Returns how many times longer a call of `work` takes than a call of `floor`, in processor time. Batches of calls
/// alternate between the two, and the quickest batch of each is compared.
template <class Work, class Floor>
double ratioOf(Work work, Floor floor, int callsInBatch) {
    const char* value = std::getenv("KOVA_BENCHMARK_BATCHES");
    const int batches = value ? std::atoi(value) : 40;
    const auto batch = [callsInBatch](auto& call) {
        const std::clock_t start = std::clock();
        for (int i = 0; i < callsInBatch; ++i) call();
        return static_cast<double>(std::clock() - start);
    };
    double quickestWork = batch(work), quickestFloor = batch(floor);
    for (int i = 0; i < batches; ++i) {
        quickestFloor = std::min(quickestFloor, batch(floor));
        quickestWork = std::min(quickestWork, batch(work));
    }
    return quickestWork / quickestFloor;
}

void Floor(benchmark::State& state) {
    FloorTree tree(static_cast<int>(state.range(0)));
    int calls = 0;
    for (auto _ : state) tree.solve(nextWidth(calls), kHeight);
}

void Solver(benchmark::State& state) {
    const int tiles = static_cast<int>(state.range(0));
    const LayoutNode tree = balancedTree(tiles, 0, LayoutAxis::horizontal);
    TileMinimumSizes minimums;
    for (int i = 0; i < tiles; ++i) minimums[tileID(i)] = minimumOfTile(i, tiles);
    const LayoutMetrics metrics{0, kGap, {0, 0}};
    LayoutSolver solver;
    SolvedLayout result;
    int calls = 0;
    const auto solve = [&] {
        solver.solve(tree, minimums, {static_cast<double>(nextWidth(calls)), kHeight}, metrics, 0, result);
        benchmark::DoNotOptimize(result.frames.data());
        benchmark::ClobberMemory();
    };
    for (auto _ : state) solve();
    FloorTree floor(tiles);
    int floorCalls = 0;
    state.counters["ratio"] = ratioOf(
        solve, [&] { floor.solve(nextWidth(floorCalls), kHeight); }, 200'000 / tiles);
    state.counters["unsatisfied"] = static_cast<double>(result.unsatisfiedTileIDs.size());
}

/// Searches for a span of slots, for a window that does not fit into one slot. Every second slot is occupied.
void searchSpan(benchmark::State& state, const std::vector<TileSlot>& slots, std::size_t anchor, CGSize minimumSize) {
    std::set<SlotID> occupied;
    for (std::size_t i = 0; i < slots.size(); i += 2) occupied.insert(slots[i].id);
    std::optional<TileSpan> span;
    for (auto _ : state) {
        span = TileSpanPolicy::bestSpan(slots, slots[anchor].id, {kWidth, kHeight}, 5, minimumSize, occupied);
        benchmark::DoNotOptimize(span);
    }
    state.counters["slots"] = span ? static_cast<double>(span->slots.size()) : 0;
}

void SpanInSixGrid(benchmark::State& state) {
    searchSpan(state, findLayout(builtInLayouts(), "jarvis.six-grid")->slots, 1, {1300, 700});
}

std::vector<TileSlot> grid(int columns, int rows) {
    std::vector<TileSlot> slots;
    for (int i = 0; i < columns * rows; ++i) {
        slots.push_back({tileID(i), "",
                         makeRect(static_cast<double>(i % columns) / columns, static_cast<double>(i / columns) / rows,
                                  1.0 / columns, 1.0 / rows)});
    }
    return slots;
}

void SpanInGridOf63(benchmark::State& state) {
    const bool fillsDisplay = state.range(0) == 1;
    searchSpan(state, grid(9, 7), 31, fillsDisplay ? CGSize{kWidth - 20, kHeight - 20} : CGSize{700, 500});
}

/// No edges of two slots are in line, so the search has to examine every rectangle between edges.
void SpanAmong63ScatteredSlots(benchmark::State& state) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> place(0, 0.95);
    std::vector<TileSlot> slots{{"anchor", "", makeRect(0.48, 0.48, 0.04, 0.04)}};
    while (slots.size() < 63) {
        slots.push_back(
            {tileID(static_cast<int>(slots.size())), "", makeRect(place(random), place(random), 0.03, 0.02)});
    }
    searchSpan(state, slots, 0, {kWidth * 0.8, kHeight * 0.8});
}

/// Measures what the agent computes when a divider moves or a display changes. `DisplayLayouts` reuses the solver and
/// the memory of the result.
void Display(benchmark::State& state) {
    const int tiles = static_cast<int>(state.range(0));
    const std::vector<LayoutDefinition> catalogue{
        makeLayoutDefinition("balanced", "Balanced", LayoutDisplayClass::standard,
                             balancedTree(tiles, 0, LayoutAxis::horizontal), {0, kGap, {0, 0}})};
    WorkspaceProfile profile;
    profile.layoutID = "balanced";
    profile.tileInset = 0;
    TileMinimumSizes minimums;
    for (int i = 0; i < tiles; ++i) minimums[tileID(i)] = minimumOfTile(i, tiles);
    Screen screen;
    screen.frame = screen.visibleFrame = makeRect(0, 0, kWidth, kHeight);
    screen.knownID = displayID(screen); // as the workspace stores it
    DisplayLayouts layouts;
    int calls = 0;
    const auto solve = [&] {
        screen.visibleFrame.size.width = nextWidth(calls);
        benchmark::DoNotOptimize(layouts.solve(screen, profile, catalogue, minimums).frames.data());
        benchmark::ClobberMemory();
    };
    for (auto _ : state) solve();
    FloorTree floor(tiles);
    int floorCalls = 0;
    state.counters["ratio"] = ratioOf(
        solve, [&] { floor.solve(nextWidth(floorCalls), kHeight); }, 200'000 / tiles);
}

BENCHMARK(Floor)->Arg(6)->Arg(20)->Arg(100)->Arg(1000);
BENCHMARK(Solver)->Arg(6)->Arg(20)->Arg(100)->Arg(1000);
BENCHMARK(Display)->Arg(6)->Arg(20)->Arg(100)->Arg(1000);
BENCHMARK(SpanInSixGrid);
BENCHMARK(SpanInGridOf63)->Arg(0)->Arg(1);
BENCHMARK(SpanAmong63ScatteredSlots);

} // namespace

BENCHMARK_MAIN();
