// The name of the Wi-Fi interface as the network path has it, remembered for a day.
//
// Made by: the composition. Asked by: `SimpleWlanInterfaceResolver`.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "NetworkMonitor/Wlan/WlanInterfaceNameFinder.h"
#include "Platform/Clock.h"
#include "Platform/Dispatch.h"
#include "Platform/PathMonitor.h"
#include "Platform/UserDefaults.h"

namespace lanternfold {

/// Any thread; each look-up has a monitor and a result of its own, so that one never sees the name
/// that another one has found, but through the cache.
class NetworkPathWlanInterfaceNameFinder final : public WlanInterfaceNameFinder {
 public:
  /// A dictionary of the string `nameKey` and the date `dateKey`, when it was found.
  static constexpr std::string_view cacheKey = "NetworkPathWlanInterfaceNameFinderCache";
  static constexpr std::string_view nameKey = "interfaceName";
  static constexpr std::string_view dateKey = "date";
  /// Of the wall clock. A date in the future has not reached that age either.
  static constexpr std::chrono::seconds cacheLifetime{86'400};
  static constexpr std::chrono::milliseconds longestWait{100};

  /// What the finder needs of the system. All outlive it and the updates of its monitors.
  struct Environment {
    PathMonitorFactory& pathMonitors;
    Dispatch& dispatch;
    const Clock& clock;
  };

  /// Null `userDefaults` mean that nothing is remembered.
  NetworkPathWlanInterfaceNameFinder(std::shared_ptr<UserDefaults> userDefaults,
                                     const Environment& environment);

  /// The remembered name, or the first interface of the first Wi-Fi path that is reported. Blocks
  /// the caller for at most `longestWait`, beside what the user defaults take.
  [[nodiscard]] std::optional<std::string> wlanInterfaceName() override;

 private:
  class Lookup;

  [[nodiscard]] std::optional<std::string> cachedName() const;
  [[nodiscard]] std::optional<std::string> currentName() const;
  void waitFor(const Lookup& lookup) const;

  const std::shared_ptr<UserDefaults> userDefaults_;
  const Environment environment_;
};

}  // namespace lanternfold
