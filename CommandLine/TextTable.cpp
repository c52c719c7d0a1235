#include "CommandLine/TextTable.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "Support/FatalError.h"
#include "Wiring/PrintableText.h"

namespace lanternfold {
namespace {

constexpr std::string_view columnGap = "  ";

std::vector<std::string> titlesOf(const std::vector<TextColumn>& columns) {
  std::vector<std::string> titles;
  titles.reserve(columns.size());
  for (const TextColumn& column : columns) titles.push_back(column.title);
  return titles;
}

void widen(std::vector<std::size_t>& widths, const std::vector<std::string>& cells) {
  for (std::size_t index = 0; index < cells.size(); ++index) {
    widths[index] = std::max(widths[index], terminalWidth(cells[index]));
  }
}

}  // namespace

TextTable::TextTable(std::vector<TextColumn> columns) : columns_(std::move(columns)) {}

void TextTable::addRow(std::vector<std::string> cells) {
  if (cells.size() != columns_.size()) {
    fatalError("a table's row has a different number of cells than the table has columns");
  }
  for (std::string& cell : cells) cell = printable(cell);
  rows_.push_back(std::move(cells));
}

void TextTable::write(std::ostream& output, TextStyle style) const {
  const std::vector<std::string> titles = titlesOf(columns_);
  std::vector<std::size_t> widths(columns_.size(), 0);
  widen(widths, titles);
  for (const auto& row : rows_) widen(widths, row);
  output << heading(line(titles, widths), style) << '\n';
  for (const auto& row : rows_) output << line(row, widths) << '\n';
}

std::string TextTable::line(const std::vector<std::string>& cells,
                            const std::vector<std::size_t>& widths) const {
  std::string text;
  for (std::size_t index = 0; index < cells.size(); ++index) {
    if (index > 0) text += columnGap;
    const std::string space(widths[index] - terminalWidth(cells[index]), ' ');
    text += columns_[index].alignment == ColumnAlignment::right ? space + cells[index]
                                                                : cells[index] + space;
  }
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

std::string heading(const std::string& text, TextStyle style) {
  return style == TextStyle::coloured ? "\x1b[1m" + text + "\x1b[0m" : text;
}

}  // namespace lanternfold
