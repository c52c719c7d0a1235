// A kernel's facts about its Wi-Fi that a test sets, told as the Linux client tells them: with the
// names only when the user consents.
#pragma once

#include <optional>
#include <utility>

#include "Platform/WifiClient.h"
#include "PlatformLinux/Wifi/WifiComposition.h"
#include "Wiring/WifiConsent.h"

namespace lanternfold {

/// One thread. A machine without Wi-Fi until facts are set.
class FactualWifi final : public WifiClient {
 public:
  explicit FactualWifi(const LocationConsent& consent) : consent_(consent) {}

  void setFacts(std::optional<WifiFacts> facts) { facts_ = std::move(facts); }
  /// From now on the kernel does not tell.
  void refuse(NetworkKernelError error) { error_ = error; }

  [[nodiscard]] std::optional<WifiInterface> interface() const override {
    auto full = report();
    if (!full || !*full) return std::nullopt;
    return std::move((*full)->interface);
  }

  [[nodiscard]] WifiReading report() const {
    if (error_) return std::unexpected(*error_);
    if (!facts_) return std::nullopt;
    return wifiReportOf(*facts_, mayTellWifiNames(consent_) ? WifiNameDisclosure::told
                                                            : WifiNameDisclosure::withheld);
  }

 private:
  const LocationConsent& consent_;
  std::optional<WifiFacts> facts_;
  std::optional<NetworkKernelError> error_;
};

}  // namespace lanternfold
