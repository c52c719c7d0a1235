#include "NetBase/NetInterfaceDecoding.h"

#include <string>
#include <utility>
#include <vector>

#include "NetBase/SNUtilsKeys.h"

namespace lanternfold {
namespace {

// Each function below stores what stands under `key` and says whether the value, if there, was of
// the right kind. Outputs are untouched otherwise.

bool takeText(const PropertyListDictionary& dictionary, std::string_view key,
              std::optional<std::string>& text) {
  const PropertyListValue* value = dictionary.find(key);
  if (value == nullptr) return true;
  const std::string* string = value->asString();
  if (string == nullptr) return false;
  text = *string;
  return true;
}

bool takeInteger(const PropertyListDictionary& dictionary, std::string_view key,
                 std::optional<std::int64_t>& integer) {
  const PropertyListValue* value = dictionary.find(key);
  if (value == nullptr) return true;
  const auto number = value->asInteger();
  if (!number) return false;
  integer = number;
  return true;
}

/// A number that must be there and fit the width of `Number`.
template <typename Number>
bool takeNumber(const PropertyListDictionary& dictionary, std::string_view key, Number& number) {
  const PropertyListValue* value = dictionary.find(key);
  if (value == nullptr) return false;
  const auto wide = value->asUnsigned();
  if (!wide || !std::in_range<Number>(*wide)) return false;
  number = static_cast<Number>(*wide);
  return true;
}

bool takeNumbers(const PropertyListDictionary& dictionary, NetInterface::Metrics& metrics) {
  using Key = SNUtilsInterfaceInfoKey;
  return takeNumber(dictionary, Key::type, metrics.type) &&
         takeNumber(dictionary, Key::physical, metrics.physical) &&
         takeNumber(dictionary, Key::baudrate, metrics.baudrate) &&
         takeNumber(dictionary, Key::mtu, metrics.mtu) &&
         takeNumber(dictionary, Key::recvBytes, metrics.recvBytes) &&
         takeNumber(dictionary, Key::sentBytes, metrics.sentBytes) &&
         takeNumber(dictionary, Key::recvPackets, metrics.recvPackets) &&
         takeNumber(dictionary, Key::sentPackets, metrics.sentPackets) &&
         takeNumber(dictionary, Key::recvErrors, metrics.recvErrors) &&
         takeNumber(dictionary, Key::sentErrors, metrics.sentErrors) &&
         takeNumber(dictionary, Key::collisions, metrics.collisions);
}

std::vector<NetInterface::Address> decodeAddresses(const PropertyListValue* value) {
  std::vector<NetInterface::Address> addresses;
  const PropertyListArray* list = value == nullptr ? nullptr : value->asArray();
  if (list == nullptr) return addresses;
  addresses.reserve(list->size());
  for (const PropertyListValue& element : *list) {
    auto address = decodeNetInterfaceAddress(element);
    if (address) addresses.push_back(*std::move(address));
  }
  return addresses;
}

}  // namespace

NetInterface decodeNetInterface(std::string_view name, const PropertyListDictionary& interface) {
  using Key = SNUtilsInetInterfacesKey;
  const PropertyListValue* active = interface.find(Key::active);
  const PropertyListValue* metrics = interface.find(Key::metrics);
  return {.name = std::string(name),
          .isActive = active != nullptr && active->asBoolean().value_or(false),
          .ipv4 = decodeAddresses(interface.find(Key::ipv4)),
          .ipv6 = decodeAddresses(interface.find(Key::ipv6)),
          .metrics = metrics == nullptr ? std::nullopt : decodeNetInterfaceMetrics(*metrics)};
}

std::optional<NetInterface::Address> decodeNetInterfaceAddress(const PropertyListValue& element) {
  using Key = SNUtilsInetAddressKey;
  const PropertyListDictionary* dictionary = element.asDictionary();
  if (dictionary == nullptr) return std::nullopt;
  NetInterface::Address address;
  std::optional<std::string> ip;
  const bool fits = takeText(*dictionary, Key::ip, ip) && ip &&
                    takeText(*dictionary, Key::netmask, address.netmask) &&
                    takeText(*dictionary, Key::gateway, address.gateway) &&
                    takeInteger(*dictionary, Key::prefix, address.prefix) &&
                    takeText(*dictionary, Key::cidr, address.cidr);
  if (!fits) return std::nullopt;
  address.ip = *std::move(ip);
  return address;
}

std::optional<NetInterface::Metrics> decodeNetInterfaceMetrics(const PropertyListValue& value) {
  const PropertyListDictionary* dictionary = value.asDictionary();
  if (dictionary == nullptr) return std::nullopt;
  NetInterface::Metrics metrics;
  const bool fits = takeNumbers(*dictionary, metrics) &&
                    takeText(*dictionary, SNUtilsInterfaceInfoKey::hwAddress, metrics.hwAddress);
  return fits ? std::optional(std::move(metrics)) : std::nullopt;
}

}  // namespace lanternfold
