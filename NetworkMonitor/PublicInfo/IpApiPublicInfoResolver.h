// Provider and country, of the geolocation service.
//
// Made by: the composition. Read by: the cached resolver, which spares the service.
#pragma once

#include <string>

#include "NetworkMonitor/PublicInfo/RestApiPublicInfoResolve.h"
#include "NetworkMonitor/PublicInfo/ServiceUrls.h"

namespace lanternfold {

/// Asks over IPv4 alone: the answer is kept for as long as the IPv4 address stays the same, and a
/// host with both families would tell the other one.
class IpApiPublicInfoResolver final : public RestApiPublicInfoResolve {
 public:
  IpApiPublicInfoResolver(UrlSessions& sessions, const BundleInformation& bundle,
                          const ServiceUrls& urls);

  [[nodiscard]] Keys supportedKeys() const override {
    return {PublicInfoKey::ip, PublicInfoKey::isp, PublicInfoKey::country};
  }
  [[nodiscard]] std::string apiUrl() const override { return url_; }
  /// {"isp", "countryCode", "as", "query"}, all of them texts. "query" is the address that asked,
  /// of either family; "as" is not used. A provider or a country whose text is empty is unknown and
  /// left out.
  [[nodiscard]] Answer parseResponse(std::string_view data) const override;

 protected:
  [[nodiscard]] UrlAddressFamily addressFamily() const override { return UrlAddressFamily::ipv4; }

 private:
  const std::string url_;
};

}  // namespace lanternfold
