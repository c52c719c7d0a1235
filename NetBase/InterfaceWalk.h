// One walk over the kernel's interfaces: from the records of one reading to the loosely typed
// interface dictionaries.
//
// Made by: `SNUtils`, one for each call. Linear in the number of entries: each table is read once
// and every entry is looked up once by its name.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "NetBase/InterfaceNameMap.h"
#include "Platform/NetworkKernel.h"
#include "Support/PropertyListValue.h"

namespace lanternfold {

class InterfaceWalk {
 public:
  using NameFilter = std::function<bool(std::string_view name)>;

  /// `isWanted` decides which names the walk takes; it is asked again for further entries of a
  /// refused name. `reading` outlives the walk.
  InterfaceWalk(NetworkKernelReading& reading, NameFilter isWanted);

  /// The interface dictionaries by name; to be called once. Empty when the address list cannot be
  /// read; without metrics when the link list cannot.
  [[nodiscard]] InterfaceNameMap<PropertyListDictionary> run();

 private:
  void take(const AddressEntry& entry);
  [[nodiscard]] PropertyListDictionary* interfaceNamed(const std::string& name, bool active);
  [[nodiscard]] PropertyListDictionary* knownInterface(std::string_view name);
  void addIPv4Address(PropertyListDictionary& interface, const std::string& name,
                      const IPv4Bytes& address, const IPv4Bytes& netmask);
  [[nodiscard]] std::string_view gatewayOf(std::string_view name);
  void addMetrics();

  NetworkKernelReading& reading_;
  NameFilter isWanted_;
  InterfaceNameMap<PropertyListDictionary> interfaces_;
  // In the order in which they were first met, and where the last look-up ended among them.
  std::vector<InterfaceNameMap<PropertyListDictionary>::value_type*> met_;
  std::size_t lastFound_ = 0;
  // Filled when the first address asks, so that a walk without addresses reads no routing table.
  std::optional<InterfaceNameMap<std::string>> gateways_;
};

}  // namespace lanternfold
