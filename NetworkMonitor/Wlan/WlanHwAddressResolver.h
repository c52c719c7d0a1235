// Who knows the hardware address of the Wi-Fi interface when the system withholds it.
//
// Implemented by: `MacAddressStore`. Asked by: `SimpleWlanInterfaceResolver`.
#pragma once

#include <optional>
#include <string>

namespace lanternfold {

class WlanHwAddressResolver {
 public:
  virtual ~WlanHwAddressResolver() = default;

  /// As it was given, in whatever spelling; none when none is known.
  [[nodiscard]] virtual std::optional<std::string> getWlanHwAddress() const = 0;
};

}  // namespace lanternfold
