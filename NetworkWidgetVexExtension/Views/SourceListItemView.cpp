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
/// Of a long name in a narrow card so many characters are shown at each of its ends.
constexpr std::size_t shownAtEachEnd = 4;

/// Interfaces that are called after their place or their hardware address have long names, which
/// would leave no room for the network's.
bool isLongInterfaceName(std::string_view label) {
  const auto isGraph = [](char character) { return character > ' ' && character < 0x7F; };
  return label.size() > 2 * shownAtEachEnd + 2 && std::ranges::all_of(label, isGraph);
}

View labelOf(const SourceListItem& item, const WidgetEnvironment& environment) {
  if (!environment.hasNarrowCards || !isLongInterfaceName(item.label)) {
    return SimpleLabelView{item.label}.body();
  }
  const std::string& name = item.label;
  return SimpleLabelView{name.substr(0, shownAtEachEnd) + "\u2026" +
                         name.substr(name.size() - shownAtEachEnd)}
      .body()
      .accessible(name);
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
  const NetworkWidgetDefaultStyle style(environment);
  TextStyle valueStyle{isFirstItem ? style.firstValueFont : style.valueFont,
                       truncationOf(item.value), smallestValueScale};
  if (item.value == withheldNameText(environment.strings)) {
    valueStyle.lineLimit = linesOfASentence;
  }
  View value = text(item.value, valueStyle);
  if (item.label.empty()) return value;
  View label = labelOf(item, environment).layoutPriority(1);
  if (item.value.empty()) return label;
  std::vector<View> parts;
  parts.push_back(std::move(label));
  parts.push_back(value);
  View whole = hstack(VerticalAlignment::centre, 4, std::move(parts));
  if (item.labelRequired) return whole;
  std::vector<View> choices;
  choices.push_back(std::move(whole));
  choices.push_back(std::move(value));
  return firstThatFits(FitAxes::horizontal, std::move(choices));
}

}  // namespace lanternfold
