// A table of texts, aligned by terminal columns.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "Wiring/Console.h"

namespace lanternfold {

enum class ColumnAlignment { left, right };

struct TextColumn {
  std::string title;
  ColumnAlignment alignment = ColumnAlignment::left;
};

class TextTable {
 public:
  explicit TextTable(std::vector<TextColumn> columns);

  /// One cell a column; stops the program for another number of cells. Control characters in a cell
  /// are shown as escapes.
  void addRow(std::vector<std::string> cells);

  /// The titles and every row, columns two spaces apart, no space at a line's end.
  void write(std::ostream& output, TextStyle style) const;

 private:
  [[nodiscard]] std::string line(const std::vector<std::string>& cells,
                                 const std::vector<std::size_t>& widths) const;

  std::vector<TextColumn> columns_;
  std::vector<std::vector<std::string>> rows_;
};

/// `text` between the escape sequences for a heading, or as it is in the plain style.
[[nodiscard]] std::string heading(const std::string& text, TextStyle style);

}  // namespace lanternfold
