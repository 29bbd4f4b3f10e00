// A table with aligned columns of text.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace kova::cli {

enum class Align { left, right };

struct TableColumn {
    std::string title;
    Align align = Align::left;
};

class Table {
  public:
    explicit Table(std::vector<TableColumn> columns);
    /// One text per column.
    void add(std::vector<std::string> cells);
    bool isEmpty() const { return rows_.size() == 1; }
    /// On a terminal the last column is cut at the terminal's edge.
    std::string text() const;

  private:
    std::vector<TableColumn> columns_;
    std::vector<std::vector<std::string>> rows_; // the titles first
};

} // namespace kova::cli
