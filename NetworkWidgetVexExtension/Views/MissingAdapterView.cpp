#include "NetworkWidgetVexExtension/Views/MissingAdapterView.h"

#include <string_view>
#include <utility>
#include <vector>

#include "NetworkWidgetVexExtension/Views/NetworkSourceIconView.h"
#include "NetworkWidgetVexExtension/Views/SourceListItemView.h"
#include "NetworkWidgetVexExtension/Views/WidgetStyle.h"
#include "Support/Localizable.h"
#include "ViewTree/Elements.h"

namespace lanternfold {
namespace {

/// The icon steps aside when the lines would have less than this; lines without it get no more.
constexpr double rowsBesideIcon = 40;

}  // namespace

View MissingAdapterView::body(const WidgetEnvironment& environment) const {
  const TextStyle style{.font = NetworkWidgetDefaultStyle(environment).valueFont, .lineLimit = 2};
  const auto line = [&](std::string_view key) {
    return text(environment.strings.localized(key), style);
  };
  std::vector<View> lines;
  lines.push_back(
      SourceListItemView{{name, environment.strings.localized("Not available"), true}, true}.body(
          environment));
  lines.push_back(line(localizable("It is gone, or cannot be read now.")));
  lines.push_back(line(localizable("Its card comes back with it.")));
  FrameNode rows;
  rows.width.maximum = unlimited;
  rows.alignment = topLeading;
  return accessoryRow(
      {VerticalAlignment::centre, 5, rowsBesideIcon, rowsBesideIcon},
      NetworkSourceIconView{NetworkSourceCategory::other()}.body(environment).opacity(0.5, 0.5),
      vstack(HorizontalAlignment::leading, 4, std::move(lines)).frame(rows), emptyView());
}

}  // namespace lanternfold
