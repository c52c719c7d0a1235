#include "NetBase/NetUtils.h"

#include "NetBase/NetInterfaceDecoding.h"

namespace lanternfold {

InterfaceNameMap<NetInterface> NetUtils::interfaces(
    std::optional<std::string_view> prefixed,
    const std::optional<std::vector<std::string>>& excluding) const {
  const auto dictionaries = utils_.inetInterfacesWithPrefix(prefixed, excluding);
  InterfaceNameMap<NetInterface> interfaces;
  interfaces.reserve(dictionaries.size());
  for (const auto& [name, dictionary] : dictionaries) {
    interfaces.emplace(name, decodeNetInterface(name, dictionary));
  }
  return interfaces;
}

std::vector<std::string> NetUtils::defaultDnsServers() const { return utils_.listDNSServers(); }

}  // namespace lanternfold
