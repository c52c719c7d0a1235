// Rows of a source as text, a line a row, so that a test reads like the table it expects.
#pragma once

#include <string>

#include "NetworkMonitor/Model/SourceListItem.h"

namespace lanternfold {

/// "LABEL / VALUE" a line; a row whose label is required ends with " !".
inline std::string sourceListText(const SourceList& rows) {
  std::string text;
  for (const SourceListItem& row : rows) {
    text += row.label + " / " + row.value + (row.labelRequired ? " !\n" : "\n");
  }
  return text;
}

}  // namespace lanternfold
