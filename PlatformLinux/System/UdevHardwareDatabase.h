// The hardware database that udev installs (hwdb.bin), through libudev.
//
// Made by: the composition. Read by: `LinuxNetworkConfiguration`.
#pragma once

#include "PlatformLinux/Adapters/HardwareDatabase.h"

namespace lanternfold {

/// Stateless: every question opens the database afresh (a mapping, no read), so that any thread may
/// ask and a database installed later is found. Bare systems and containers have none.
class UdevHardwareDatabase final : public HardwareDatabase {
 public:
  [[nodiscard]] std::optional<HardwareNames> namesFor(std::string_view modalias) const override;
};

}  // namespace lanternfold
