#include "NetworkMonitor/PublicInfo/QuernapleIp6Resolver.h"

#include <algorithm>
#include <utility>

#include "NetworkMonitor/PublicInfo/AnswerTexts.h"
#include "NetworkMonitor/PublicInfo/PublicInfoResolverError.h"

namespace lanternfold {
namespace {

/// What a machine without IPv6 gets from a host that has nothing else.
bool meansNoIPv6(std::error_code error) {
  return error == UrlErrorCode::cannotConnectToHost || error == UrlErrorCode::timedOut;
}

}  // namespace

QuernapleIp6Resolver::QuernapleIp6Resolver(UrlSessions& sessions, const BundleInformation& bundle,
                                           const ServiceUrls& urls)
    : RestApiPublicInfoResolve(sessions, bundle), url_(urls.ipv6EchoEndpoint()) {}

PublicInfoResolver::Answer QuernapleIp6Resolver::parseResponse(std::string_view data) const {
  auto texts = decodeAnswerTexts(data, {"ip"});
  if (!texts) return std::unexpected(texts.error());
  std::string& ip = texts->at("ip");
  if (!isIPv6Literal(ip)) {
    return std::unexpected(decodingError(PublicInfoDecodingError::notAnIPv6Address, "ip"));
  }
  return PublicInfo{{PublicInfoKey::ip6, std::move(ip)}};
}

PublicInfoResolver::Answer QuernapleIp6Resolver::answerOf(const UrlAnswer& answer,
                                                          const Keys& keys) const {
  if (std::ranges::find(keys, PublicInfoKey::supportsIp6) == keys.end()) {
    return RestApiPublicInfoResolve::answerOf(answer, keys);
  }
  if (!answer.data && meansNoIPv6(answer.error)) {
    return PublicInfo{{PublicInfoKey::supportsIp6, false}};
  }
  auto resolved = RestApiPublicInfoResolve::answerOf(answer, keys);
  if (resolved) resolved->insert_or_assign(PublicInfoKey::supportsIp6, true);
  return resolved;
}

}  // namespace lanternfold
