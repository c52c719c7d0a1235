// A machine's Wi-Fi that a test sets: its interface and whether the user's consent is there.
#pragma once

#include <mutex>
#include <optional>
#include <utility>

#include "Platform/WifiClient.h"

namespace lanternfold {

/// Any thread. A machine without Wi-Fi until an interface is set.
class FakeWifiClient final : public WifiClient {
 public:
  FakeWifiClient() = default;
  explicit FakeWifiClient(WifiInterface interface) : interface_(std::move(interface)) {}

  /// The interface with the names of its network; none takes the Wi-Fi away.
  void setInterface(std::optional<WifiInterface> interface) {
    const std::lock_guard lock(mutex_);
    interface_ = std::move(interface);
  }

  /// Whether the user's consent is lacking: the network's names are none while it is.
  void setWithholding(bool withholding) {
    const std::lock_guard lock(mutex_);
    isWithholding_ = withholding;
  }

  [[nodiscard]] std::optional<WifiInterface> interface() const override {
    const std::lock_guard lock(mutex_);
    ++looks_;
    auto seen = interface_;
    if (seen && isWithholding_) {
      seen->ssid.reset();
      seen->bssid.reset();
    }
    return seen;
  }

  /// How often the interface was asked for.
  [[nodiscard]] int looks() const {
    const std::lock_guard lock(mutex_);
    return looks_;
  }

 private:
  mutable std::mutex mutex_;
  // Guarded by mutex_:
  std::optional<WifiInterface> interface_;
  bool isWithholding_ = false;
  mutable int looks_ = 0;
};

}  // namespace lanternfold
