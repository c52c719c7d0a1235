#include "WidgetHost/Desk/CatalogueRules.h"

#include <algorithm>

#include "WidgetHost/Store/WidgetStoreText.h"
#include "WidgetService/QuotedText.h"
#include "WidgetService/ServiceMessage.h"
#include "WidgetService/WidgetFamilyName.h"

namespace lanternfold {
namespace {

std::string kindsOf(std::span<const WidgetDescription> catalogue) {
  std::string kinds;
  for (const WidgetDescription& widget : catalogue) {
    if (!kinds.empty()) kinds += ", ";
    kinds += widget.kind;
  }
  return kinds;
}

}  // namespace

const WidgetDescription* descriptionOf(std::span<const WidgetDescription> catalogue,
                                       std::string_view kind) {
  const auto found = std::ranges::find(catalogue, kind, &WidgetDescription::kind);
  return found == catalogue.end() ? nullptr : &*found;
}

std::string displayNameOf(std::span<const WidgetDescription> catalogue, const std::string& kind) {
  const WidgetDescription* const description = descriptionOf(catalogue, kind);
  return description == nullptr ? kind : description->displayName;
}

bool isOffered(std::span<const WidgetDescription> catalogue, const PlacedWidget& widget) {
  const WidgetDescription* const description = descriptionOf(catalogue, widget.kind);
  return description != nullptr &&
         std::ranges::find(description->supportedFamilies, widget.family) !=
             description->supportedFamilies.end();
}

std::expected<WidgetFamily, std::string> familyFor(std::span<const WidgetDescription> catalogue,
                                                   const std::string& kind,
                                                   std::optional<WidgetFamily> wanted) {
  if (catalogue.empty()) {
    return std::unexpected(
        "The widget extension has not said yet which widgets there are; try again in a moment");
  }
  const WidgetDescription* const description = descriptionOf(catalogue, kind);
  if (description == nullptr) {
    return std::unexpected("There is no widget " + quotedText(kind) + "; choose one of " +
                           kindsOf(catalogue));
  }
  const auto& families = description->supportedFamilies;
  if (!wanted) return families.back();
  if (std::ranges::find(families, *wanted) != families.end()) return *wanted;
  return std::unexpected(kind + " comes in " + widgetFamilyNames(families) + ", not in " +
                         std::string(widgetFamilyName(*wanted)));
}

std::expected<void, std::string> checkConfiguration(const ConfigurationParameters& configuration) {
  if (!configuration.adapter) return {};
  const auto& [identifier, display] = *configuration.adapter;
  if (identifier.value_or("").size() <= longestAdapterText &&
      display.size() <= longestAdapterText) {
    return {};
  }
  return std::unexpected("An adapter's name has at most " + std::to_string(longestAdapterText) +
                         " bytes; choose one that there is");
}

MonitorPosition boundedPosition(MonitorPosition position) {
  if (position.monitor.size() > longestMonitorName) position.monitor.clear();
  position.x = std::clamp(position.x, -furthestPosition, furthestPosition);
  position.y = std::clamp(position.y, -furthestPosition, furthestPosition);
  return position;
}

}  // namespace lanternfold
