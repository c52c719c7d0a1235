#include "CommandLine/StateText.h"

#include <algorithm>

#include "CommandLine/PrintableText.h"
#include "CommandLine/TextTable.h"

namespace lanternfold {
namespace {

void writeSource(const AnyNetworkSource& source, const StringTable& strings,
                 const Console& console) {
  const SourceList rows = compressedListRepresentationOf(source, strings);
  std::size_t width = 0;
  for (const SourceListItem& row : rows) {
    width = std::max(width, terminalWidth(printable(row.label)));
  }
  console.output << heading(printable(displayNameOf(source)), console.style) << '\n';
  for (const SourceListItem& row : rows) {
    const std::string label = printable(row.label);
    console.output << "  " << label << std::string(width - terminalWidth(label) + 2, ' ')
                   << printable(row.value) << '\n';
  }
}

}  // namespace

void writeStateText(const NetworkState& state, NetworkSourceCategory categories,
                    const StringTable& strings, const Console& console) {
  bool any = false;
  for (const AnyNetworkSource& source : state.allNetworkSources()) {
    if (!categories.contains(categoryOf(source))) continue;
    writeSource(source, strings, console);
    any = true;
  }
  if (!any) console.output << strings.localized("No source") << '\n';
}

}  // namespace lanternfold
