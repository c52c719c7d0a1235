#include "NetBase/LinkMetrics.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "NetBase/AddressText.h"
#include "NetBase/SNUtilsKeys.h"

namespace lanternfold {
namespace {

bool isShown(const LinkAddress& address) {
  constexpr std::array<std::uint8_t, 6> none{};
  constexpr std::array<std::uint8_t, 6> withheld{2};
  return address.bytes.size() == none.size() && !std::ranges::equal(address.bytes, none) &&
         !std::ranges::equal(address.bytes, withheld);
}

}  // namespace

PropertyListDictionary linkMetricsDictionary(const LinkRecord& link) {
  using Key = SNUtilsInterfaceInfoKey;
  const std::array<std::pair<Key, std::uint64_t>, 11> numbers{{
      {Key::type, link.type},
      {Key::physical, link.physical},
      {Key::baudrate, link.baudrate},
      {Key::mtu, link.mtu},
      {Key::recvBytes, link.recvBytes},
      {Key::sentBytes, link.sentBytes},
      {Key::recvPackets, link.recvPackets},
      {Key::sentPackets, link.sentPackets},
      {Key::recvErrors, link.recvErrors},
      {Key::sentErrors, link.sentErrors},
      {Key::collisions, link.collisions},
  }};
  PropertyListDictionary metrics;
  metrics.reserve(numbers.size() + 1);
  for (const auto& [key, number] : numbers) metrics.append(key, number);
  if (isShown(link.hardwareAddress)) {
    metrics.append(Key::hwAddress, hardwareAddressText(link.hardwareAddress));
  }
  return metrics;
}

}  // namespace lanternfold
