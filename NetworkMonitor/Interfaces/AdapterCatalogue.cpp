#include "NetworkMonitor/Interfaces/AdapterCatalogue.h"

#include <algorithm>
#include <optional>

namespace lanternfold {
namespace {

InterfaceType interfaceType(ConfiguredInterfaceType type) {
  switch (type) {
    case ConfiguredInterfaceType::ieee80211:
      return InterfaceType::wlan;
    case ConfiguredInterfaceType::ethernet:
      return InterfaceType::ethernet;
    case ConfiguredInterfaceType::bluetooth:
      return InterfaceType::bluetooth;
    case ConfiguredInterfaceType::other:
      break;
  }
  return InterfaceType::unknown;
}

InterfaceType interfaceType(std::optional<PathInterfaceType> type) {
  if (type == PathInterfaceType::wifi) return InterfaceType::wlan;
  if (type == PathInterfaceType::wiredEthernet) return InterfaceType::ethernet;
  return InterfaceType::unknown;
}

std::string nameOfType(InterfaceType type, std::string_view bsdName, const StringTable& strings) {
  switch (type) {
    case InterfaceType::wlan:
      return strings.localized("Wi-Fi");
    case InterfaceType::ethernet:
      return strings.localized("Ethernet");
    case InterfaceType::bluetooth:
      return strings.localized("Bluetooth");
    case InterfaceType::cellular:
    case InterfaceType::unknown:
      break;
  }
  return std::string(bsdName);
}

}  // namespace

AdapterCatalogue::AdapterCatalogue(const NetworkConfiguration& configuration,
                                   const StringTable& strings)
    : configuration_(configuration),
      strings_(strings),
      interfaces_(configuration.allInterfaces()) {}

AdapterDescription AdapterCatalogue::describe(std::string_view bsdName) const {
  const auto found = std::ranges::find(interfaces_, bsdName, &ConfiguredInterface::bsdName);
  const ConfiguredInterface* configured = found == interfaces_.end() ? nullptr : &*found;
  const InterfaceType type = typeOf(bsdName, configured);
  if (configured != nullptr && configured->localizedDisplayName) {
    return {type, *configured->localizedDisplayName};
  }
  return {type, nameOfType(type, bsdName, strings_)};
}

InterfaceType AdapterCatalogue::typeOf(std::string_view bsdName,
                                       const ConfiguredInterface* configured) const {
  if (configured != nullptr && configured->type) return interfaceType(*configured->type);
  std::string scopedAddress = "127.0.0.1%";
  scopedAddress += bsdName;
  return interfaceType(configuration_.scopedInterfaceType(scopedAddress));
}

}  // namespace lanternfold
