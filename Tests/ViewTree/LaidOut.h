// Laying views out in tests, with the letters of MetricTextMeasurer: in a font of ten points a
// character is 5 wide and 12 high.
#pragma once

#include <string>
#include <string_view>

#include "Tests/Support/MetricTextMeasurer.h"
#include "ViewTree/Elements.h"
#include "ViewTree/Layout.h"
#include "ViewTree/TextDump.h"

namespace lanternfold {

inline View word(std::string_view content) { return text(content, {{10}}); }

inline LaidOutView laidOut(const View& view, Size size,
                           LayoutDirection direction = LayoutDirection::leftToRight) {
  const MetricTextMeasurer measurer;
  return layOut(view, size, {measurer, "10:30", direction});
}

inline std::string dumpOf(const View& view, Size size) { return textDump(laidOut(view, size)); }

/// A frame that takes all it is offered.
inline FrameNode fillingFrame(Alignment alignment = centred) {
  FrameNode frame;
  frame.width.maximum = unlimited;
  frame.height.maximum = unlimited;
  frame.alignment = alignment;
  return frame;
}

}  // namespace lanternfold
