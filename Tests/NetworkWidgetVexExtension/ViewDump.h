// What a view looks like, as text, for the tests that look for parts of it.
#pragma once

#include <string>

#include "NetworkWidgetVexExtension/Views/WidgetEnvironment.h"
#include "Tests/Support/FakeStringTable.h"
#include "Tests/Support/MetricTextMeasurer.h"
#include "ViewTree/Layout.h"
#include "ViewTree/TextDump.h"

namespace lanternfold {

inline const FakeStringTable strings;
inline const WidgetEnvironment environment{strings};

inline std::string dumpOf(const View& view, Size size = {340, 138}) {
  const MetricTextMeasurer measurer;
  return textDump(layOut(view, size, {measurer, "Today, 10:30"}));
}

inline std::size_t occurrences(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

}  // namespace lanternfold
