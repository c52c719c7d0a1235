#include "NetworkMonitor/PublicInfo/ServiceUrls.h"

#include <cstdint>
#include <glib.h>
#include <vector>

namespace lanternfold {
namespace {

constexpr std::string_view echoPath = "/lanternfold/ip.php";
constexpr std::string_view geolocationPath = "/json/";
constexpr std::string_view geolocationQuery = "?fields=isp,query,countryCode,as";
constexpr std::string_view sentinelPath = "/lanternfold/sentinel.php";

/// As a value in a query: everything but letters, digits and four marks is written as %NN.
std::string percentEncoded(std::string_view text) {
  if (text.empty()) return {};
  const std::vector<std::uint8_t> bytes(text.begin(), text.end());
  char* const escaped = g_uri_escape_bytes(bytes.data(), bytes.size(), nullptr);
  std::string encoded = escaped;
  g_free(escaped);
  return encoded;
}

}  // namespace

std::string ServiceUrls::ipv4EchoEndpoint() const { return ipv4Echo.endpoint(echoPath, {}); }

std::string ServiceUrls::ipv6EchoEndpoint() const { return ipv6Echo.endpoint(echoPath, {}); }

std::string ServiceUrls::geolocationEndpoint() const {
  return geolocation.endpoint(geolocationPath, geolocationQuery);
}

std::string ServiceUrls::sentinelEndpoint(std::string_view deviceIdentifier,
                                          std::string_view mode) const {
  return sentinel.endpointTelling(sentinelPath,
                                  "?deviceId=" + percentEncoded(deviceIdentifier) +
                                      "&simulator=false&mode=" + percentEncoded(mode));
}

}  // namespace lanternfold
