#include "NetworkWidgetVexExtension/Views/RowSpacing.h"

#include <algorithm>
#include <cmath>

namespace lanternfold {
namespace {

double heightAt(double spacing, const StackedSources& sources) {
  double height = sources.endAboveALine ? spacing : 0;
  for (const std::size_t count : sources.rowCounts) {
    const auto rows = static_cast<double>(count);
    const double apart = count > 1 ? (rows - 1) * spacing : 0;
    height += std::max(rows * sources.rowHeight + apart, sources.leastSourceHeight);
  }
  const auto gaps = static_cast<double>(sources.rowCounts.size()) - 1;
  return height + std::max(0.0, gaps) * sources.between;
}

}  // namespace

std::vector<double> rowSpacingsOf(const StackedSources& sources) {
  double spacing = sources.widest;
  while (spacing > 1 && heightAt(spacing, sources) > sources.available) spacing -= 1;
  std::vector<double> spacings;
  for (; spacing > 1; spacing = std::floor(spacing / 2)) spacings.push_back(spacing);
  spacings.push_back(1);
  return spacings;
}

}  // namespace lanternfold
