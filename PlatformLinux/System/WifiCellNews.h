// Tells whether the kernel's list of cells may have changed, from nl80211's own reports.
//
// Made by: `systemWifiSources`. Read by: `LinuxWifiClient`.
#pragma once

#include <optional>

#include "PlatformLinux/System/WifiEventSocket.h"

namespace lanternfold {

/// Threads: one at a time. Listens in the network namespace of the thread that asks for the second
/// time: a program that reads once has nothing to keep, and opens nothing.
class WifiCellNews {
 public:
  /// Whether something has been reported since the last call. True as well until it listens, after
  /// a loss of reports, and always where the kernel or a sandbox refuses.
  [[nodiscard]] bool mayHaveChanged();

 private:
  bool wasAsked_ = false;
  std::optional<WifiEventSocket> socket_;
};

}  // namespace lanternfold
