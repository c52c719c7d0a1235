#include "CommandLine/WidgetRows.h"

#include <algorithm>
#include <cstddef>
#include <string>

#include "Wiring/PrintableText.h"

namespace lanternfold {

void writeWidgetRows(const std::vector<PlainTextRow>& rows, const Console& console) {
  std::size_t width = 0;
  for (const PlainTextRow& row : rows) {
    if (row.size() > 1) width = std::max(width, terminalWidth(printable(row.front())));
  }
  for (const PlainTextRow& row : rows) {
    std::string line = printable(row.front());
    for (std::size_t column = 1; column < row.size(); ++column) {
      if (column == 1) line.append(width - terminalWidth(line), ' ');
      line.append("  ").append(printable(row[column]));
    }
    console.output << line << '\n';
  }
}

}  // namespace lanternfold
