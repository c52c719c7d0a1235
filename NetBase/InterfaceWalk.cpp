#include "NetBase/InterfaceWalk.h"

#include <cstdint>
#include <utility>
#include <variant>

#include "NetBase/AddressText.h"
#include "NetBase/DefaultGateways.h"
#include "NetBase/LinkMetrics.h"
#include "NetBase/SNUtils.h"
#include "NetBase/SNUtilsKeys.h"

namespace lanternfold {
namespace {

void fillEmptyInterface(PropertyListDictionary& interface, const std::string& name, bool active) {
  using Key = SNUtilsInetInterfacesKey;
  interface.reserve(5);
  interface.append(Key::name, name);
  interface.append(Key::active, active);
  interface.append(Key::ipv4, PropertyListArray{});
  interface.append(Key::ipv6, PropertyListArray{});
  interface.append(Key::metrics, PropertyListDictionary{});
}

}  // namespace

InterfaceWalk::InterfaceWalk(NetworkKernelReading& reading, NameFilter isWanted)
    : reading_(reading), isWanted_(std::move(isWanted)) {}

InterfaceNameMap<PropertyListDictionary> InterfaceWalk::run() {
  const auto& entries = reading_.addressEntries();
  if (!entries) return {};
  // Room for every entry, more than is needed: growing step by step costs more than empty buckets.
  interfaces_.reserve(entries->size());
  met_.reserve(entries->size());
  for (const AddressEntry& entry : *entries) take(entry);
  if (!interfaces_.empty()) addMetrics();
  return std::move(interfaces_);
}

void InterfaceWalk::take(const AddressEntry& entry) {
  if (!entry.name || !entry.address) return;
  if (std::holds_alternative<OtherAddress>(*entry.address)) return;
  // An interface that is first met through its link entry starts inactive; one that is first met
  // through an address starts active, even when that address is then left out.
  const bool isLink = std::holds_alternative<LinkAddress>(*entry.address);
  PropertyListDictionary* interface = interfaceNamed(*entry.name, !isLink);
  if (interface == nullptr) return;
  // IPv6 addresses are not listed and make nothing active: an address needs a gateway, and
  // `SNUtils::gatewayForAddress6` never reports one. Not asking it spares every IPv6 address a
  // routing table.
  const auto* address = std::get_if<IPv4Bytes>(&*entry.address);
  if (address == nullptr || !entry.netmask) return;
  const auto* netmask = std::get_if<IPv4Bytes>(&*entry.netmask);
  if (netmask != nullptr) addIPv4Address(*interface, *entry.name, *address, *netmask);
}

PropertyListDictionary* InterfaceWalk::interfaceNamed(const std::string& name, bool active) {
  if (PropertyListDictionary* known = knownInterface(name)) return known;
  if (!isWanted_(name)) return nullptr;
  const auto [place, isNew] = interfaces_.try_emplace(name);
  if (isNew) {
    fillEmptyInterface(place->second, name, active);
    lastFound_ = met_.size();
    met_.push_back(&*place);
  }
  return &place->second;
}

// Each of the kernel's lists comes in the order of the links, so that mostly the interface that was
// found last is meant again or the next one, and the map need not be asked.
PropertyListDictionary* InterfaceWalk::knownInterface(std::string_view name) {
  constexpr std::size_t lookAhead = 2;
  std::size_t position = lastFound_;
  for (std::size_t step = 0; step < lookAhead && !met_.empty(); ++step, ++position) {
    if (position == met_.size()) position = 0;
    if (met_[position]->first != name) continue;
    lastFound_ = position;
    return &met_[position]->second;
  }
  return nullptr;
}

void InterfaceWalk::addIPv4Address(PropertyListDictionary& interface, const std::string& name,
                                   const IPv4Bytes& address, const IPv4Bytes& netmask) {
  using Key = SNUtilsInetAddressKey;
  const std::string_view gateway = gatewayOf(name);
  const std::uint8_t prefix = SNUtils::ipv4masklen(netmask);
  // The block is written with the gateway, not with the address: what is shown as an adapter's
  // network is the network seen from its router.
  std::string cidr(gateway);
  cidr += '/';
  cidr += std::to_string(prefix);

  PropertyListDictionary details;
  details.reserve(5);
  details.append(Key::ip, ipv4Text(address));
  details.append(Key::netmask, ipv4Text(netmask));
  details.append(Key::gateway, gateway);
  details.append(Key::prefix, std::uint64_t{prefix});
  details.append(Key::cidr, std::move(cidr));

  *interface.find(SNUtilsInetInterfacesKey::active) = true;
  interface.find(SNUtilsInetInterfacesKey::ipv4)->asArray()->emplace_back(std::move(details));
}

std::string_view InterfaceWalk::gatewayOf(std::string_view name) {
  if (!gateways_) {
    // A routing table that cannot be read names no gateway; the addresses are shown all the same.
    gateways_ = defaultGateways(reading_).value_or(InterfaceNameMap<std::string>{});
  }
  const auto gateway = gateways_->find(name);
  return gateway == gateways_->end() ? noGatewayText : std::string_view(gateway->second);
}

void InterfaceWalk::addMetrics() {
  const auto& links = reading_.linkRecords();
  if (!links) return;
  for (const LinkRecord& link : *links) {
    PropertyListDictionary* interface = knownInterface(link.name);
    if (interface == nullptr) {
      const auto found = interfaces_.find(link.name);
      if (found == interfaces_.end()) continue;
      interface = &found->second;
    }
    *interface->find(SNUtilsInetInterfacesKey::metrics) = linkMetricsDictionary(link);
  }
}

}  // namespace lanternfold
