// The public IPv4 address, of the echo service.
//
// Made by: the composition. Read by: the internet info resolver, and the cached resolver.
#pragma once

#include <string>

#include "NetworkMonitor/PublicInfo/RestApiPublicInfoResolve.h"
#include "NetworkMonitor/PublicInfo/ServiceUrls.h"

namespace lanternfold {

/// Asks over IPv4 alone: a host with both families would echo the wrong one.
class QuernapleIpResolver final : public RestApiPublicInfoResolve {
 public:
  QuernapleIpResolver(UrlSessions& sessions, const BundleInformation& bundle,
                      const ServiceUrls& urls);

  [[nodiscard]] Keys supportedKeys() const override { return {PublicInfoKey::ip}; }
  [[nodiscard]] std::string apiUrl() const override { return url_; }
  /// {"ip": an IPv4 address}.
  [[nodiscard]] Answer parseResponse(std::string_view data) const override;

 protected:
  [[nodiscard]] UrlAddressFamily addressFamily() const override { return UrlAddressFamily::ipv4; }

 private:
  const std::string url_;
};

}  // namespace lanternfold
