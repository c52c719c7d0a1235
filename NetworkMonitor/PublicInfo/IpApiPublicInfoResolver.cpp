#include "NetworkMonitor/PublicInfo/IpApiPublicInfoResolver.h"

#include <utility>

#include "NetworkMonitor/PublicInfo/AnswerTexts.h"
#include "NetworkMonitor/PublicInfo/PublicInfoResolverError.h"

namespace lanternfold {

using Error = PublicInfoDecodingError;

IpApiPublicInfoResolver::IpApiPublicInfoResolver(UrlSessions& sessions,
                                                 const BundleInformation& bundle,
                                                 const ServiceUrls& urls)
    : RestApiPublicInfoResolve(sessions, bundle), url_(urls.geolocationEndpoint()) {}

PublicInfoResolver::Answer IpApiPublicInfoResolver::parseResponse(std::string_view data) const {
  auto texts = decodeAnswerTexts(data, {"isp", "countryCode", "as", "query"});
  if (!texts) return std::unexpected(texts.error());
  std::string& ip = texts->at("query");
  std::string& isp = texts->at("isp");
  std::string& country = texts->at("countryCode");
  if (!isIPv4Literal(ip) && !isIPv6Literal(ip)) {
    return std::unexpected(decodingError(Error::notAnAddress, "query"));
  }
  if (!country.empty() && !isCountryCode(country)) {
    return std::unexpected(decodingError(Error::notACountryCode, "countryCode"));
  }

  PublicInfo answer{{PublicInfoKey::ip, std::move(ip)}};
  if (!isp.empty()) answer.emplace(PublicInfoKey::isp, std::move(isp));
  if (!country.empty()) answer.emplace(PublicInfoKey::country, std::move(country));
  return answer;
}

}  // namespace lanternfold
