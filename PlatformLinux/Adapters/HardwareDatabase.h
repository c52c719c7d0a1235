// The seam to the database that knows vendors and models of devices by their modalias.
//
// Production side: `UdevHardwareDatabase`. Read by: the adapter list.
#pragma once

#include <optional>
#include <string_view>

#include "PlatformLinux/Adapters/AdapterNames.h"

namespace lanternfold {

/// Any thread; never fails: a device that is not known, or a missing database, is none.
class HardwareDatabase {
 public:
  virtual ~HardwareDatabase() = default;

  /// `modalias` as the kernel writes it ("pci:v00008086d00001533…"). What the database does not
  /// know of a known device is an empty text.
  [[nodiscard]] virtual std::optional<HardwareNames> namesFor(std::string_view modalias) const = 0;
};

}  // namespace lanternfold
