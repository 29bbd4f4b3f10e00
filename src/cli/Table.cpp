#include "cli/Table.h"

#include "cli/Terminal.h"

#include <algorithm>
#include <limits>

namespace kova::cli {

namespace {

constexpr std::size_t kGap = 2;

}

Table::Table(std::vector<TableColumn> columns) : columns_(std::move(columns)), rows_(1) {
    for (const auto& column : columns_) rows_.front().push_back(column.title);
}

void Table::add(std::vector<std::string> cells) {
    for (auto& cell : cells) cell = printable(cell);
    rows_.push_back(std::move(cells));
}

std::string Table::text() const {
    std::vector<std::size_t> widths(columns_.size());
    for (const auto& row : rows_) {
        for (std::size_t c = 0; c < row.size(); ++c) widths[c] = std::max(widths[c], columnsOf(row[c]));
    }
    const auto edge =
        isTerminal() ? static_cast<std::size_t>(terminalWidth()) : std::numeric_limits<std::size_t>::max();
    std::string out;
    for (const auto& row : rows_) {
        std::size_t at = 0;
        for (std::size_t c = 0; c < row.size(); ++c) {
            const bool isLast = c + 1 == row.size();
            const std::string cell = isLast && at < edge ? clipped(row[c], edge - at) : row[c];
            const std::size_t padding = widths[c] - std::min(widths[c], columnsOf(cell));
            if (columns_[c].align == Align::right) out.append(padding, ' ');
            out += cell;
            if (columns_[c].align == Align::left && !isLast) out.append(padding, ' ');
            if (!isLast) out.append(kGap, ' ');
            at += widths[c] + kGap;
        }
        out.erase(out.find_last_not_of(' ') + 1);
        out += '\n';
    }
    return out;
}

} // namespace kova::cli
