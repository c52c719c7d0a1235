#include "WidgetHost/Control/HostControl.h"

#include <optional>
#include <utility>

#include "WidgetHost/Control/PlacedWidgetJson.h"
#include "WidgetService/WidgetFamilyName.h"

namespace lanternfold {
namespace {

std::unexpected<WidgetControlFailure> refused(std::string sentence) {
  return std::unexpected(WidgetControlFailure{.cause = WidgetControlFailure::Cause::refused,
                                              .sentence = std::move(sentence)});
}

template <typename Result>
WidgetControl::Outcome<Result> outcomeOf(std::expected<Result, std::string> result) {
  if (!result) return refused(std::move(result.error()));
  if constexpr (std::is_void_v<Result>) {
    return {};
  } else {
    return *std::move(result);
  }
}

}  // namespace

HostControl::HostControl(WidgetDesk& desk, std::function<void()> end)
    : desk_(desk), end_(std::move(end)) {}

WidgetControl::Outcome<std::string> HostControl::list() {
  std::vector<PlacedWidget> widgets;
  for (const Card& card : desk_.cards()) widgets.push_back(card.placed);
  return placedWidgetsJson(widgets);
}

WidgetControl::Outcome<std::string> HostControl::add(const std::string& kind,
                                                     const std::string& family,
                                                     const std::string& adapter) {
  const auto chosenFamily = widgetFamilyOfName(family);
  if (!family.empty() && !chosenFamily) return refused("a widget is small, medium or large");
  ConfigurationParameters configuration;
  if (!adapter.empty()) {
    configuration.adapter = AdapterParameter{.identifier = adapter, .display = adapter};
  }
  return outcomeOf(desk_.add(kind, chosenFamily, std::move(configuration), std::nullopt));
}

WidgetControl::Outcome<void> HostControl::remove(const std::string& id) {
  return outcomeOf(desk_.remove(id));
}

WidgetControl::Outcome<void> HostControl::reload(const std::string& id) {
  if (!id.empty()) return outcomeOf(desk_.reload(id));
  desk_.reloadAll();
  return {};
}

WidgetControl::Outcome<void> HostControl::quit() {
  end_();
  return {};
}

}  // namespace lanternfold
