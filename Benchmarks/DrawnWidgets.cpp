#include "Benchmarks/DrawnWidgets.h"

#include <string_view>
#include <utility>
#include <variant>

#include "Benchmarks/UntranslatedTexts.h"
#include "NetworkWidgetVexExtension/Views/NetworkAdapterWidgetEntryView.h"
#include "NetworkWidgetVexExtension/Views/NetworkStateWidgetEntryView.h"

namespace lanternfold {
namespace {

DrawnWidget stateWidget(std::string name, WidgetFamily family, NetworkSourceCategory categories) {
  const UntranslatedTexts strings;
  NetworkStateEntry entry;
  entry.networkState = NetworkState::placeholder(true, strings);
  WidgetEnvironment environment{.strings = strings, .widgetFamily = family};
  environment.shownCategories = categories;
  return {std::move(name), family, NetworkStateWidgetEntryView{entry}.body(environment)};
}

}  // namespace

std::vector<DrawnWidget> drawnWidgets() {
  using enum WidgetFamily;
  const UntranslatedTexts strings;
  const auto all = NetworkSourceCategory::all();
  std::vector<DrawnWidget> widgets;
  widgets.push_back(stateWidget("panoramic, small", small, all));
  widgets.push_back(stateWidget("panoramic, medium", medium, all));
  widgets.push_back(stateWidget("panoramic, large", large, all));
  widgets.push_back(stateWidget("internet, small", small, NetworkSourceCategory::internet()));
  widgets.push_back(stateWidget("internet, medium", medium, NetworkSourceCategory::internet()));
  widgets.push_back(stateWidget("Wi-Fi, small", small, NetworkSourceCategory::wlan()));
  widgets.push_back(stateWidget("Wi-Fi, medium", medium, NetworkSourceCategory::wlan()));
  const NetworkAdapterEntry adapter{{}, NetworkState::placeholder(true, strings), {}};
  widgets.push_back(
      {"adapter, medium", medium,
       NetworkAdapterWidgetEntryView{adapter}.body({.strings = strings, .widgetFamily = medium})});
  return widgets;
}

View variant(View view, unsigned number) {
  if (auto* const words = std::get_if<TextNode>(&view.node)) {
    const std::string digits = std::to_string(number);
    words->text = words->text.size() > digits.size()
                      ? words->text.substr(0, words->text.size() - digits.size()) + digits
                      : digits;
  }
  for (View& child : view.children) child = variant(std::move(child), number);
  return view;
}

}  // namespace lanternfold
