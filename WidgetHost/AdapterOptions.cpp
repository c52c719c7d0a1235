#include "WidgetHost/AdapterOptions.h"

#include <algorithm>
#include <tuple>

#include "NetworkWidgetVexExtension/Views/AdapterChoice.h"
#include "Support/TextPlaceholders.h"

namespace lanternfold {

NetworkAdapter adapterOption(const BasicInterface& interface) {
  const bool isNameless = interface.displayName.empty() || interface.displayName == interface.name;
  return {
      .identifier = interface.name,
      .display = isNameless ? interface.name : interface.displayName + " (" + interface.name + ')',
      .pronunciationHint = std::nullopt};
}

NetworkAdapter automaticOption(const BasicInterface* now, const StringTable& strings) {
  return {.identifier = automaticAdapterIdentifier,
          .display = now == nullptr ? strings.localized("Automatic")
                                    : fillPlaceholders(strings.localized("Automatic, now %@"),
                                                       {adapterOption(*now).display}),
          .pronunciationHint = std::nullopt};
}

std::vector<NetworkAdapter> adapterOptions(const std::vector<BasicInterface>& interfaces,
                                           const std::optional<std::string>& bestRoute,
                                           const StringTable& strings) {
  std::vector<std::string> preferredNames;
  if (bestRoute) preferredNames.push_back(*bestRoute);
  std::vector<NetworkAdapter> options;
  options.push_back(automaticOption(bestAdapter(interfaces, preferredNames), strings));
  std::vector<const BasicInterface*> ordered;
  for (const BasicInterface& interface : interfaces) ordered.push_back(&interface);
  std::ranges::sort(ordered, {}, [](const BasicInterface* interface) {
    return std::tuple(adapterKindRank(interface->type), interface->name);
  });
  for (const BasicInterface* interface : ordered) options.push_back(adapterOption(*interface));
  return options;
}

}  // namespace lanternfold
