#include "NetworkMonitor/PublicInfo/ServiceUrls.h"

#include <algorithm>

namespace lanternfold {
namespace {

constexpr std::string_view echoPath = "/lanternfold/ip.php";
constexpr std::string_view geolocationPath = "/json/";
constexpr std::string_view geolocationQuery = "?fields=isp,query,countryCode,as";
constexpr std::string_view sentinelPath = "/lanternfold/sentinel.php";

/// As a value in a query: everything but letters, digits and four marks is written as %NN.
std::string percentEncoded(std::string_view text) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  constexpr std::string_view marks = "-._~";
  std::string encoded;
  for (const char c : text) {
    const bool isPlain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                         (c >= '0' && c <= '9') || marks.find(c) != std::string_view::npos;
    const auto byte = static_cast<unsigned char>(c);
    if (isPlain) {
      encoded += c;
    } else {
      encoded += '%';
      encoded += digits[byte >> 4U];
      encoded += digits[byte & 0x0FU];
    }
  }
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
