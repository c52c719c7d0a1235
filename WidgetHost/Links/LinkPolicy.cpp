#include "WidgetHost/Links/LinkPolicy.h"

#include <optional>

#include "Support/AsciiCase.h"
#include "ViewTree/LinkUrl.h"

namespace lanternfold {
namespace {

/// What stands behind "scheme://"; none for another scheme and for another form.
std::optional<std::string_view> behindScheme(std::string_view url, std::string_view scheme) {
  constexpr std::string_view separator = "://";
  if (!isLinkUrl(url) || url.size() < scheme.size()) return std::nullopt;
  // Case does not matter in a scheme (RFC 3986, 3.1).
  if (asciiLowercased(url.substr(0, scheme.size())) != asciiLowercased(scheme)) return std::nullopt;
  url.remove_prefix(scheme.size());
  if (!url.starts_with(separator)) return std::nullopt;
  return url.substr(separator.size());
}

/// The host with its port, and a user's name where there is one.
std::string_view authorityOf(std::string_view behindScheme) {
  return behindScheme.substr(0, behindScheme.find_first_of("/?#"));
}

bool isPlainAuthority(std::string_view authority) {
  return !authority.empty() && !authority.contains('@') && !authority.starts_with(':');
}

}  // namespace

LinkVerdict linkVerdict(std::string_view url) {
  if (const auto page = behindScheme(url, "https")) {
    return isPlainAuthority(authorityOf(*page)) ? LinkVerdict::webPage : LinkVerdict::refused;
  }
  return behindScheme(url, deepLinkScheme) ? LinkVerdict::deepLink : LinkVerdict::refused;
}

bool isBandwidthMonitorLink(std::string_view url) {
  const auto target = behindScheme(url, deepLinkScheme);
  return target && asciiLowercased(authorityOf(*target)) == "bandwidth-monitor";
}

}  // namespace lanternfold
