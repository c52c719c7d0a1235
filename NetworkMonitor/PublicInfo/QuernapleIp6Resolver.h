// The public IPv6 address, of the echo service, and whether there is IPv6 at all.
//
// Made by: the composition. Read by: the internet info resolver.
#pragma once

#include <string>

#include "NetworkMonitor/PublicInfo/RestApiPublicInfoResolve.h"
#include "NetworkMonitor/PublicInfo/ServiceUrls.h"

namespace lanternfold {

/// Asks over IPv6 alone, so that an address that is echoed means that there is IPv6. A host that
/// cannot be reached, or not in time, means a machine without: no error for whoever asks for
/// `supportsIp6`.
class QuernapleIp6Resolver final : public RestApiPublicInfoResolve {
 public:
  QuernapleIp6Resolver(UrlSessions& sessions, const BundleInformation& bundle,
                       const ServiceUrls& urls);

  [[nodiscard]] Keys supportedKeys() const override {
    return {PublicInfoKey::ip6, PublicInfoKey::supportsIp6};
  }
  [[nodiscard]] std::string apiUrl() const override { return url_; }
  /// {"ip": an IPv6 address}.
  [[nodiscard]] Answer parseResponse(std::string_view data) const override;

 protected:
  [[nodiscard]] UrlAddressFamily addressFamily() const override { return UrlAddressFamily::ipv6; }
  [[nodiscard]] Answer answerOf(const UrlAnswer& answer, const Keys& keys) const override;

 private:
  const std::string url_;
};

}  // namespace lanternfold
