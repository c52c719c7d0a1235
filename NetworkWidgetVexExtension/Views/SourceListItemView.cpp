#include "NetworkWidgetVexExtension/Views/SourceListItemView.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "NetworkMonitor/Model/WlanInterface.h"
#include "NetworkWidgetVexExtension/Views/SimpleLabelView.h"
#include "NetworkWidgetVexExtension/Views/WidgetStyle.h"
#include "ViewTree/Elements.h"

namespace lanternfold {
namespace {

constexpr std::size_t linesOfASentence = 4;
/// How much smaller a value may be before a label that can be missed goes.
constexpr double scaleBesideALabel = 0.85;
/// Of a long name in a narrow card so many characters are shown at each of its ends.
constexpr std::size_t shownAtEachEnd = 4;

/// A first row that must have its label is that of a source with a name: the label is the
/// interface's, the value that of what it is or belongs to.
bool tellsNames(const SourceListItemView& row) { return row.isFirstItem && row.item.labelRequired; }

/// Interfaces that are called after their place or their hardware address have long names, which
/// would leave no room for the network's.
bool isLongInterfaceName(const SourceListItemView& row) {
  const std::string& label = row.item.label;
  const auto isGraph = [](char character) { return character > ' ' && character < 0x7F; };
  return tellsNames(row) && label.size() > 2 * shownAtEachEnd + 2 &&
         std::ranges::all_of(label, isGraph);
}

View labelOf(const SourceListItemView& row, const WidgetEnvironment& environment) {
  const std::string& name = row.item.label;
  if (!environment.hasNarrowCards || !isLongInterfaceName(row)) {
    return SimpleLabelView{name}.body();
  }
  return SimpleLabelView{name.substr(0, shownAtEachEnd) + "\u2026" +
                         name.substr(name.size() - shownAtEachEnd)}
      .body()
      .accessible(name);
}

TextStyle valueStyle(const SourceListItemView& row, const WidgetEnvironment& environment) {
  const NetworkWidgetDefaultStyle style(environment);
  TextStyle value{row.isFirstItem ? style.firstValueFont : style.valueFont,
                  tellsNames(row) ? Truncation::tail : truncationOf(row.item.value),
                  smallestValueScale};
  if (value.truncation == Truncation::middle) {
    value.minimumScale = smallestAddressSize / value.font.size;
  }
  if (row.item.value == withheldNameText(environment.strings)) value.lineLimit = linesOfASentence;
  return value;
}

View beside(View label, View value) {
  std::vector<View> parts;
  parts.push_back(std::move(label));
  parts.push_back(std::move(value));
  return hstack(VerticalAlignment::centre, 4, std::move(parts));
}

}  // namespace

Truncation truncationOf(std::string_view value) {
  const std::string_view firstWord = value.substr(0, value.find(' '));
  const auto consistsOf = [firstWord](std::string_view characters) {
    return firstWord.find_first_not_of(characters) == std::string_view::npos;
  };
  const bool isDotted = firstWord.contains('.') && consistsOf("0123456789./");
  const bool isColonSeparated = firstWord.contains(':') && consistsOf("0123456789abcdefABCDEF.:/");
  return isDotted || isColonSeparated ? Truncation::middle : Truncation::tail;
}

View SourceListItemView::body(const WidgetEnvironment& environment) const {
  const TextStyle style = valueStyle(*this, environment);
  FrameNode row;
  (style.lineLimit == 1 ? row.height.fixed : row.height.minimum) =
      NetworkWidgetDefaultStyle(environment).rowHeight();
  row.alignment = {HorizontalAlignment::leading, VerticalAlignment::centre};
  return content(style, environment).frame(row);
}

View SourceListItemView::content(const TextStyle& style,
                                 const WidgetEnvironment& environment) const {
  View value = text(item.value, style);
  if (item.label.empty()) return value;
  View label = labelOf(*this, environment).layoutPriority(1);
  if (item.value.empty()) return label;
  if (item.labelRequired) return beside(label, std::move(value));
  TextStyle smaller = style;
  smaller.font.size *= scaleBesideALabel;
  std::vector<View> choices;
  choices.push_back(beside(label, value));
  choices.push_back(beside(label, text(item.value, smaller)));
  choices.push_back(std::move(value));
  return firstThatFits(FitAxes::horizontal, std::move(choices));
}

}  // namespace lanternfold
