#include "PlatformLinux/System/LinuxNetworkConfiguration.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "PlatformLinux/Adapters/AdapterNames.h"
#include "PlatformLinux/Adapters/ScopedAddress.h"

namespace lanternfold {

namespace {

int placeOf(ConfiguredInterfaceType type) {
  switch (type) {
    case ConfiguredInterfaceType::ethernet:
      return 0;
    case ConfiguredInterfaceType::ieee80211:
      return 1;
    case ConfiguredInterfaceType::bluetooth:
      return 2;
    case ConfiguredInterfaceType::other:
      break;
  }
  return 3;
}

/// By type, then by name.
bool comesBefore(const SurveyedLink& one, const SurveyedLink& other) {
  return std::tuple(placeOf(*one.linkClass.configuredType), std::string_view(one.link.name)) <
         std::tuple(placeOf(*other.linkClass.configuredType), std::string_view(other.link.name));
}

}  // namespace

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
  auto links = survey_.allLinks();
  if (!links) return {};
  std::erase_if(*links, [](const SurveyedLink& each) { return !each.linkClass.configuredType; });
  std::sort(links->begin(), links->end(), comesBefore);
  std::vector<NamedAdapter> names;
  for (const SurveyedLink& each : *links) {
    names.push_back({.kernelName = each.link.name, .humanName = humanName(each.link)});
  }
  disambiguate(names);
  std::vector<ConfiguredInterface> interfaces;
  for (std::size_t i = 0; i < names.size(); ++i) {
    interfaces.push_back({.bsdName = std::move(names[i].kernelName),
                          .type = (*links)[i].linkClass.configuredType,
                          .localizedDisplayName = std::move(names[i].humanName)});
  }
  return interfaces;
}

std::optional<PathInterfaceType> LinuxNetworkConfiguration::scopedInterfaceType(
    std::string_view scopedAddress) const {
  const auto name = interfaceOfScopedAddress(scopedAddress);
  const auto link = name ? survey_.linkNamed(*name) : std::nullopt;
  return link ? std::optional(link->linkClass.pathType) : std::nullopt;
}

}  // namespace lanternfold
