#include "WidgetService/WidgetFamilyName.h"

#include <algorithm>
#include <array>
#include <utility>

#include "Support/FatalError.h"

namespace lanternfold {
namespace {

using Named = std::pair<WidgetFamily, std::string_view>;

constexpr std::array names{Named{WidgetFamily::small, "small"},
                           Named{WidgetFamily::medium, "medium"},
                           Named{WidgetFamily::large, "large"}};

}  // namespace

std::string_view widgetFamilyName(WidgetFamily family) {
  const auto* const found = std::ranges::find(names, family, &Named::first);
  if (found == names.end()) fatalError("a widget family has no name");
  return found->second;
}

std::string widgetFamilyNames(const std::vector<WidgetFamily>& families) {
  std::string text;
  for (const WidgetFamily family : families) {
    if (!text.empty()) text += " or ";
    text += widgetFamilyName(family);
  }
  return text;
}

std::optional<WidgetFamily> widgetFamilyOfName(std::string_view name) {
  const auto* const found = std::ranges::find(names, name, &Named::second);
  if (found == names.end()) return std::nullopt;
  return found->first;
}

}  // namespace lanternfold
