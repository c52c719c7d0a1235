// A diagnostic ping to the sentinel, which answers nothing.
//
// Made by: whoever debugs a machine's way out; it is no part of the monitor's own graph.
#pragma once

#include <memory>
#include <string>

#include "NetworkMonitor/PublicInfo/RestApiPublicInfoResolve.h"
#include "NetworkMonitor/PublicInfo/ServiceUrls.h"
#include "Platform/UserDefaults.h"

namespace lanternfold {

/// What all pings of a program say.
struct SentinelSettings {
  std::string sentinelMode = "release";
};

class SentinelDebugResolver final : public RestApiPublicInfoResolve {
 public:
  static constexpr std::string_view deviceIdentifierKey = "SentinelDebugResolverDeviceID";

  /// `userDefaults` is the standard suite, which holds the device's identifier.
  SentinelDebugResolver(UrlSessions& sessions, const BundleInformation& bundle,
                        const ServiceUrls& urls, std::shared_ptr<UserDefaults> userDefaults,
                        SentinelSettings settings = {});

  [[nodiscard]] Keys supportedKeys() const override { return {}; }
  /// Tells the device's identifier; the first call on a machine makes one and stores it. While the
  /// settings cannot be read it is one that nobody keeps.
  [[nodiscard]] std::string apiUrl() const override;
  /// Empty, whatever the answer.
  [[nodiscard]] Answer parseResponse(std::string_view data) const override;

 private:
  const ServiceUrls urls_;
  const std::shared_ptr<UserDefaults> userDefaults_;
  const SentinelSettings settings_;
};

}  // namespace lanternfold
