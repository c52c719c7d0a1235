#include "WidgetHost/Store/WidgetIds.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

namespace lanternfold {
namespace {

/// Ids that are counted on from have no more digits than this.
constexpr std::size_t mostIdDigits = 9;

/// 0 for an id that is no such number.
std::uint64_t numberOfId(std::string_view id) {
  std::uint64_t number = 0;
  if (id.size() > mostIdDigits) return 0;
  const auto [end, error] = std::from_chars(id.data(), id.data() + id.size(), number);
  return error == std::errc() && end == id.data() + id.size() ? number : 0;
}

}  // namespace

void WidgetIds::note(std::string_view id) {
  known_.emplace(id);
  highest_ = std::max(highest_, numberOfId(id));
}

std::string WidgetIds::give() {
  std::string id = std::to_string(highest_ + 1);
  // There is a hole before the highest one.
  for (std::uint64_t number = 1; id.size() > mostIdDigits || isKnown(id); ++number) {
    id = std::to_string(number);
  }
  note(id);
  return id;
}

}  // namespace lanternfold
