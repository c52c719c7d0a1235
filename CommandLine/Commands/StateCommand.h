// `lanternfold-widgets state`: the network state, once or at every change.
#pragma once

#include <expected>
#include <string_view>

#include "NetworkMonitor/Model/NetworkSourceCategory.h"
#include "Wiring/Console.h"
#include "Wiring/Machine.h"
#include "Wiring/MonitorGraph.h"

namespace lanternfold {

/// The categories by name.
inline constexpr const char* categoryNames = "internet, wlan, cellular or other";

/// The set that a comma-separated list of category names stands for; a failure for an empty list or
/// an unknown name.
[[nodiscard]] std::expected<NetworkSourceCategory, CommandFailure> parseCategories(
    std::string_view names);

struct StateOptions {
  /// What is asked of nobody outside.
  NetworkSourceCategory categories =
      NetworkSourceCategory::wlan().unionWith(NetworkSourceCategory::other());
  /// Leave Wi-Fi out, with a line that says so, when the kernel refuses to tell of it.
  bool isWifiOptional = true;
  bool json = false;
  bool watch = false;  ///< go on until the program is asked to end
  MonitorOptions monitor = {};
};

/// Without `watch`, the state once it is complete. With it, in JSON every report on a line of its
/// own, as text every complete one that reads differently from the one before.
[[nodiscard]] std::expected<void, CommandFailure> runState(const StateOptions& options,
                                                           const Machine& machine,
                                                           const Console& console);

}  // namespace lanternfold
