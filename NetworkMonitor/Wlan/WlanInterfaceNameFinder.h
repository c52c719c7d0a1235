// Who knows what the machine's Wi-Fi interface is called.
//
// Implemented by: `NetworkPathWlanInterfaceNameFinder`. Asked by: `SimpleWlanInterfaceResolver`.
#pragma once

#include <optional>
#include <string>

namespace lanternfold {

class WlanInterfaceNameFinder {
 public:
  virtual ~WlanInterfaceNameFinder() = default;

  /// The kernel's name; none when there is no Wi-Fi interface or it was not found in time.
  [[nodiscard]] virtual std::optional<std::string> wlanInterfaceName() = 0;
};

}  // namespace lanternfold
