#include "PlatformLinux/System/LinuxNetworkConfiguration.h"

#include <utility>

#include "PlatformLinux/Adapters/AdapterList.h"
#include "PlatformLinux/Adapters/AdapterNames.h"
#include "PlatformLinux/Adapters/ScopedAddress.h"

namespace lanternfold {

LinuxNetworkConfiguration::LinuxNetworkConfiguration(const HardwareDatabase& database,
                                                     DeviceTree tree)
    : database_(database), tree_(tree), survey_(std::move(tree)) {}

std::optional<std::string> LinuxNetworkConfiguration::humanName(const LinkMessage& link) const {
  if (!isKindOfDevices(link.kind.value_or(""))) return std::nullopt;
  const auto modalias = tree_.adapterModalias(link.name, link.index);
  const auto names = modalias ? database_.namesFor(*modalias) : std::nullopt;
  return names ? adapterName(*names) : std::nullopt;
}

std::vector<ConfiguredInterface> LinuxNetworkConfiguration::allInterfaces() const {
  const auto links = survey_.allLinks();
  if (!links) return {};
  std::vector<ConfiguredInterface> adapters;
  for (const SurveyedLink& each : *links) {
    const auto type = each.linkClass.configuredType;
    if (!type) continue;
    adapters.push_back(
        {.bsdName = each.link.name, .type = type, .localizedDisplayName = humanName(each.link)});
  }
  return arrangedAdapters(std::move(adapters));
}

std::optional<PathInterfaceType> LinuxNetworkConfiguration::scopedInterfaceType(
    std::string_view scopedAddress) const {
  const auto name = interfaceOfScopedAddress(scopedAddress);
  const auto link = name ? survey_.linkNamed(*name) : std::nullopt;
  return link ? std::optional(link->linkClass.pathType) : std::nullopt;
}

}  // namespace lanternfold
