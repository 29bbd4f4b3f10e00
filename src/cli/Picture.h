// A layout drawn in characters. Neighboring tiles share a line, since the gap between them is too thin to draw.
#pragma once

#include "support/Geometry.h"

#include <string>
#include <vector>

namespace kova::cli {

struct PictureTile {
    CGRect frame{};                    // unit square, y growing downwards
    std::vector<std::string> captions; // a line each, the most important first; lines that do not fit are left out
};

enum class Lines { box, ascii };

/// One string per row. The drawing is larger than requested if a tile would have no character between its lines.
std::vector<std::string> drawLayout(const std::vector<PictureTile>& tiles, int columns, int rows, Lines lines);

} // namespace kova::cli
