#include "CommandLine/TextRows.h"

#include <algorithm>

#include "CommandLine/TextTable.h"
#include "Wiring/PrintableText.h"

namespace lanternfold {

void writeTextRows(const std::string& title, const std::vector<TextRow>& rows,
                   const Console& console) {
  std::size_t width = 0;
  for (const TextRow& row : rows) width = std::max(width, terminalWidth(printable(row.label)));
  console.output << heading(printable(title), console.style) << '\n';
  for (const TextRow& row : rows) {
    const std::string label = printable(row.label);
    console.output << "  " << label << std::string(width - terminalWidth(label) + 2, ' ')
                   << printable(row.value) << '\n';
  }
}

}  // namespace lanternfold
