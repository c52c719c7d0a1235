#include "NetworkMonitor/PublicInfo/SentinelDebugResolver.h"

#include <glib.h>
#include <utility>

#include "Support/AsciiCase.h"
#include "Support/FatalError.h"

namespace lanternfold {
namespace {

std::string randomUuid() {
  char* const text = g_uuid_string_random();
  std::string uuid = asciiUppercased(text);
  g_free(text);
  return uuid;
}

std::string deviceIdentifierOf(UserDefaults& userDefaults) {
  const auto look = userDefaults.object(SentinelDebugResolver::deviceIdentifierKey);
  // There may be one all the same, which is not to be overwritten.
  if (!look) return randomUuid();
  if (look->has_value()) {
    if (const std::string* stored = (*look)->asString()) return *stored;
  }
  std::string made = randomUuid();
  userDefaults.set(SentinelDebugResolver::deviceIdentifierKey, made);
  // What the disk does not take now stays in memory and is tried again.
  static_cast<void>(userDefaults.synchronize());
  return made;
}

}  // namespace

SentinelDebugResolver::SentinelDebugResolver(UrlSessions& sessions, const BundleInformation& bundle,
                                             const ServiceUrls& urls,
                                             std::shared_ptr<UserDefaults> userDefaults,
                                             SentinelSettings settings)
    : RestApiPublicInfoResolve(sessions, bundle),
      urls_(urls),
      userDefaults_(std::move(userDefaults)),
      settings_(std::move(settings)) {
  if (!userDefaults_) fatalError("a sentinel resolver was made without user defaults");
}

std::string SentinelDebugResolver::apiUrl() const {
  return urls_.sentinelEndpoint(deviceIdentifierOf(*userDefaults_), settings_.sentinelMode);
}

PublicInfoResolver::Answer SentinelDebugResolver::parseResponse(std::string_view) const {
  return PublicInfo{};
}

}  // namespace lanternfold
