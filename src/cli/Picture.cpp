#include "cli/Picture.h"

#include "cli/Terminal.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numeric>

namespace kova::cli {

namespace {

constexpr double kWidestGap = 0.09; // in the unit square: a gutter with a footer on a small display
constexpr double kTolerance = 0.000001;

struct Interval {
    double low, high;
};

/// A tile on the canvas: the rows and columns of its four lines.
struct Box {
    int left, top, right, bottom;
};

Interval along(const CGRect& frame, bool isX) {
    return isX ? Interval{minX(frame), maxX(frame)} : Interval{minY(frame), maxY(frame)};
}

bool overlap(Interval a, Interval b) {
    return std::min(a.high, b.high) - std::max(a.low, b.low) > kTolerance;
}

/// The edges of all tiles along one axis: for each tile its low and its high edge. Edges of neighboring tiles that face
/// each other are drawn as one line.
class SharedEdges {
  public:
    SharedEdges(const std::vector<PictureTile>& tiles, bool isX) : line_(tiles.size() * 2), hasNeighbor_(line_.size()) {
        std::iota(line_.begin(), line_.end(), std::size_t{0});
        for (const auto& tile : tiles) {
            values_.push_back(along(tile.frame, isX).low);
            values_.push_back(along(tile.frame, isX).high);
        }
        for (std::size_t a = 0; a < tiles.size(); ++a) {
            for (std::size_t b = 0; b < tiles.size(); ++b) {
                const double gap = values_[2 * b] - values_[2 * a + 1];
                if (a == b || gap < -kTolerance || gap > kWidestGap) continue;
                if (overlap(along(tiles[a].frame, !isX), along(tiles[b].frame, !isX))) join(2 * a + 1, 2 * b);
            }
        }
        for (std::size_t edge = 0; edge < values_.size(); ++edge) linePositions_.push_back(linePosition(edge));
    }

    /// The positions of each tile's two edges on an axis of `count` characters. `count` is increased until every tile
    /// has at least one character between its edges.
    std::vector<std::pair<int, int>> edgePositions(int& count) const {
        constexpr int kMostCharacters = 400;
        for (;; ++count) {
            std::vector<std::pair<int, int>> all;
            bool hasRoom = true;
            for (std::size_t tile = 0; tile < values_.size() / 2; ++tile) {
                all.emplace_back(characterPosition(2 * tile, count), characterPosition(2 * tile + 1, count));
                hasRoom = hasRoom && all.back().second >= all.back().first + 2;
            }
            if (hasRoom || count >= kMostCharacters) return all;
        }
    }

  private:
    std::size_t root(std::size_t edge) const {
        while (line_[edge] != edge) edge = line_[edge];
        return edge;
    }

    void join(std::size_t high, std::size_t low) {
        hasNeighbor_[high] = hasNeighbor_[low] = true;
        line_[root(high)] = root(low);
    }

    int characterPosition(std::size_t edge, int count) const {
        return static_cast<int>(std::lround(linePositions_[edge] * (count - 1)));
    }

    /// The position of the edge's line, from 0 to 1: the mean of the edges on that line, or the border of the picture
    /// for an edge at the layout's margin.
    double linePosition(std::size_t edge) const {
        double sum = 0;
        int members = 0;
        for (std::size_t other = 0; other < line_.size(); ++other) {
            if (root(other) != root(edge)) continue;
            sum += values_[other];
            ++members;
        }
        const double value = sum / members;
        if (!hasNeighbor_[edge] && value < kWidestGap) return 0;
        if (!hasNeighbor_[edge] && value > 1 - kWidestGap) return 1;
        return std::clamp(value, 0.0, 1.0);
    }

    std::vector<double> values_;
    std::vector<std::size_t> line_; // union-find: another edge on the same line; the root refers to itself
    std::vector<bool> hasNeighbor_;
    std::vector<double> linePositions_;
};

class Canvas {
  public:
    Canvas(int columns, int rows) :
        columns_(columns), lines_(static_cast<std::size_t>(columns * rows)),
        text_(static_cast<std::size_t>(columns * rows)), hasText_(static_cast<std::size_t>(columns * rows)) {}

    void draw(const Box& box) {
        for (int x = box.left; x < box.right; ++x) {
            for (const int y : {box.top, box.bottom}) {
                at(lines_, x, y) |= kRight;
                at(lines_, x + 1, y) |= kLeft;
            }
        }
        for (int y = box.top; y < box.bottom; ++y) {
            for (const int x : {box.left, box.right}) {
                at(lines_, x, y) |= kDown;
                at(lines_, x, y + 1) |= kUp;
            }
        }
    }

    void write(const Box& box, const std::vector<std::string>& captions) {
        const int width = box.right - box.left - 1;
        const int height = box.bottom - box.top - 1;
        const int shown = std::min(height, static_cast<int>(captions.size()));
        for (int i = 0; i < shown; ++i) {
            const std::string caption = clipped(captions[static_cast<std::size_t>(i)], static_cast<std::size_t>(width));
            int x = box.left + 1 + (width - static_cast<int>(columnsOf(caption))) / 2;
            const int y = box.top + 1 + (height - shown) / 2 + i;
            eachCharacter(caption, [&](std::string_view character, std::size_t columns) {
                if (columns == 0) return;
                at(text_, x, y) = character;
                for (std::size_t c = 0; c < columns; ++c) at(hasText_, x++, y) = true;
            });
        }
    }

    std::vector<std::string> rows(Lines style) const {
        std::vector<std::string> out;
        for (std::size_t i = 0; i < lines_.size(); ++i) {
            if (i % static_cast<std::size_t>(columns_) == 0) out.emplace_back();
            out.back() += hasText_[i] ? text_[i] : std::string(symbol(lines_[i], style));
        }
        return out;
    }

  private:
    static constexpr unsigned char kUp = 1, kDown = 2, kLeft = 4, kRight = 8;

    static std::string_view symbol(unsigned char line, Lines style) {
        constexpr std::array<std::string_view, 16> kBox = {" ", "╵", "╷", "│", "╴", "┘", "┐", "┤",
                                                           "╶", "└", "┌", "├", "─", "┴", "┬", "┼"};
        if (style == Lines::box) return kBox[line];
        return line == 0 ? " " : line == (kUp | kDown) ? "|" : line == (kLeft | kRight) ? "-" : "+";
    }

    template <class Grid>
    auto at(Grid& grid, int x, int y) -> decltype(grid[0]) {
        return grid[static_cast<std::size_t>(y) * static_cast<std::size_t>(columns_) + static_cast<std::size_t>(x)];
    }

    int columns_;
    std::vector<unsigned char> lines_;
    std::vector<std::string> text_;
    std::vector<bool> hasText_;
};

} // namespace

std::vector<std::string> drawLayout(const std::vector<PictureTile>& tiles, int columns, int rows, Lines lines) {
    const SharedEdges horizontal(tiles, true);
    const SharedEdges vertical(tiles, false);
    const auto x = horizontal.edgePositions(columns);
    const auto y = vertical.edgePositions(rows);
    std::vector<Box> boxes;
    for (std::size_t i = 0; i < tiles.size(); ++i) boxes.push_back({x[i].first, y[i].first, x[i].second, y[i].second});
    Canvas canvas(columns, rows);
    for (const Box& box : boxes) canvas.draw(box);
    for (std::size_t i = 0; i < boxes.size(); ++i) canvas.write(boxes[i], tiles[i].captions);
    return canvas.rows(lines);
}

} // namespace kova::cli
