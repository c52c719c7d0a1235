// Which web services are asked, and where on their hosts they answer.
//
// Made by: the composition, of the command line. Read by: the public-info resolvers.
#pragma once

#include <string>
#include <string_view>

#include "NetworkMonitor/PublicInfo/ServiceUrl.h"

namespace lanternfold {

/// The defaults are public services that answer as ours do; nothing is sent to a sentinel unless
/// one is named (the domain "invalid" has no hosts).
struct ServiceUrls {
  /// Answers {"ip": "…"}: over IPv4, and over IPv6 alone.
  ServiceUrl ipv4Echo = ServiceUrl::of("https://api.ipify.org/?format=json");
  ServiceUrl ipv6Echo = ServiceUrl::of("https://api6.ipify.org/?format=json");
  /// Answers {"isp", "countryCode", "as", "query"}.
  ServiceUrl geolocation = ServiceUrl::of("http://ip-api.com");
  /// Its answer is not looked at.
  ServiceUrl sentinel = ServiceUrl::of("https://sentinel.invalid");

  [[nodiscard]] std::string ipv4EchoEndpoint() const;
  [[nodiscard]] std::string ipv6EchoEndpoint() const;
  [[nodiscard]] std::string geolocationEndpoint() const;
  /// `deviceIdentifier` and `mode` are any texts.
  [[nodiscard]] std::string sentinelEndpoint(std::string_view deviceIdentifier,
                                             std::string_view mode) const;

  friend bool operator==(const ServiceUrls&, const ServiceUrls&) = default;
};

}  // namespace lanternfold
