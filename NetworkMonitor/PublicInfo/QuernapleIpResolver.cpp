#include "NetworkMonitor/PublicInfo/QuernapleIpResolver.h"

#include <utility>

#include "NetworkMonitor/PublicInfo/AnswerTexts.h"
#include "NetworkMonitor/PublicInfo/PublicInfoResolverError.h"

namespace lanternfold {

QuernapleIpResolver::QuernapleIpResolver(UrlSessions& sessions, const BundleInformation& bundle,
                                         const ServiceUrls& urls)
    : RestApiPublicInfoResolve(sessions, bundle), url_(urls.ipv4EchoEndpoint()) {}

PublicInfoResolver::Answer QuernapleIpResolver::parseResponse(std::string_view data) const {
  auto texts = decodeAnswerTexts(data, {"ip"});
  if (!texts) return std::unexpected(texts.error());
  std::string& ip = texts->at("ip");
  if (!isIPv4Literal(ip)) {
    return std::unexpected(decodingError(PublicInfoDecodingError::notAnIPv4Address, "ip"));
  }
  return PublicInfo{{PublicInfoKey::ip, std::move(ip)}};
}

}  // namespace lanternfold
