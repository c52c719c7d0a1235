// How far apart the rows of a widget's sources stand, so that they fill the room there is and all
// sources of the widget look alike.
//
// Pure. Used by: `NetworkSourceGridView`.
#pragma once

#include <cstddef>
#include <vector>

namespace lanternfold {

/// Sources one below the other; lengths in points.
struct StackedSources {
  std::vector<std::size_t> rowCounts;  ///< of each source
  double rowHeight = 0;
  double leastSourceHeight = 0;  ///< of a source with few rows
  double between = 0;            ///< from one source to the next
  double available = 0;          ///< the height of the room
  double widest = 0;             ///< how far apart rows may stand at the most
  bool endAboveALine = false;    ///< whether the last row keeps as far from what stands below
};

/// The widest spacing, in steps of 1 from `widest`, at which all rows of all sources have room;
/// and, down to 1, what rows that turn out to be higher fall back to. The widest first.
[[nodiscard]] std::vector<double> rowSpacingsOf(const StackedSources& sources);

}  // namespace lanternfold
