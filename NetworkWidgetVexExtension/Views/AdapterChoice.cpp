#include "NetworkWidgetVexExtension/Views/AdapterChoice.h"

#include <algorithm>
#include <tuple>

namespace lanternfold {
namespace {

const BasicInterface* interfaceNamed(const std::vector<BasicInterface>& interfaces,
                                     const std::string& name) {
  const auto found = std::ranges::find(interfaces, name, &BasicInterface::name);
  return found == interfaces.end() ? nullptr : &*found;
}

int connectionRank(const BasicInterface& interface) {
  if (!interface.active) return 2;
  return interface.IPv4.empty() ? 1 : 0;
}

}  // namespace

int adapterKindRank(InterfaceType type) {
  if (type == InterfaceType::ethernet) return 0;
  return type == InterfaceType::wlan ? 1 : 2;
}

std::optional<std::string> chosenAdapterName(const AdapterConfigurationIntent& configuration) {
  if (!configuration.adapter || !configuration.adapter->identifier) return std::nullopt;
  if (*configuration.adapter->identifier == automaticAdapterIdentifier) return std::nullopt;
  return configuration.adapter->identifier;
}

AdapterChoice chooseAdapter(const AdapterConfigurationIntent& configuration,
                            const std::vector<BasicInterface>& interfaces,
                            const std::vector<std::string>& preferredNames) {
  if (const std::optional<std::string> name = chosenAdapterName(configuration)) {
    const BasicInterface* chosen = interfaceNamed(interfaces, *name);
    if (!chosen) return MissingAdapter{*name};
    return *chosen;
  }
  const BasicInterface* best = bestAdapter(interfaces, preferredNames);
  if (!best) return NoAdapter{};
  return *best;
}

const BasicInterface* bestAdapter(const std::vector<BasicInterface>& interfaces,
                                  const std::vector<std::string>& preferredNames) {
  for (const std::string& name : preferredNames) {
    if (const BasicInterface* preferred = interfaceNamed(interfaces, name)) return preferred;
  }
  const auto best = std::ranges::min_element(interfaces, {}, [](const BasicInterface& interface) {
    return std::tuple(connectionRank(interface), adapterKindRank(interface.type), interface.name);
  });
  return best == interfaces.end() ? nullptr : &*best;
}

}  // namespace lanternfold
