// What the system's configuration says of each interface name: its type and its human name.
//
// Made by: `PosixInterfaceResolver`, one for each of its operations. The list of adapters is
// fetched once and answers every question, so that a type and a name never come from different
// moments.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "NetworkMonitor/Model/NetworkSource.h"
#include "Platform/NetworkConfiguration.h"
#include "Platform/StringTable.h"

namespace lanternfold {

struct AdapterDescription {
  /// The type that the list tells or, for a name that it does not type, that of the interface which
  /// a scoped loopback address leads to; `unknown` otherwise. Never `cellular`.
  InterfaceType type = InterfaceType::unknown;
  /// The adapter's human name; without one the localised name of its type, or for an unknown type
  /// the interface name itself.
  std::string displayName;

  friend bool operator==(const AdapterDescription&, const AdapterDescription&) = default;
};

class AdapterCatalogue {
 public:
  /// Fetches the list. Both arguments outlive the catalogue.
  AdapterCatalogue(const NetworkConfiguration& configuration, const StringTable& strings);

  /// Any text is a name; one that nothing is known of describes itself.
  [[nodiscard]] AdapterDescription describe(std::string_view bsdName) const;

 private:
  [[nodiscard]] InterfaceType typeOf(std::string_view bsdName,
                                     const ConfiguredInterface* configured) const;

  const NetworkConfiguration& configuration_;
  const StringTable& strings_;
  std::vector<ConfiguredInterface> interfaces_;
};

}  // namespace lanternfold
