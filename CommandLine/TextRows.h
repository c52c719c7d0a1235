// A heading with labelled values below it, as text for people.
//
// Read by: `state` and `wifi`.
#pragma once

#include <string>
#include <vector>

#include "Wiring/Console.h"

namespace lanternfold {

struct TextRow {
  std::string label;
  std::string value;
};

/// The values stand below each other. Control characters are shown as escapes.
void writeTextRows(const std::string& title, const std::vector<TextRow>& rows,
                   const Console& console);

}  // namespace lanternfold
