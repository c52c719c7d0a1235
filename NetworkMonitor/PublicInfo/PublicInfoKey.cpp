#include "NetworkMonitor/PublicInfo/PublicInfoKey.h"

#include <algorithm>

#include "Support/FatalError.h"

namespace lanternfold {

std::string_view rawValue(PublicInfoKey key) {
  switch (key) {
    case PublicInfoKey::ip:
      return "ip";
    case PublicInfoKey::ip6:
      return "ip6";
    case PublicInfoKey::supportsIp6:
      return "supportsIp6";
    case PublicInfoKey::isp:
      return "isp";
    case PublicInfoKey::country:
      return "country";
    case PublicInfoKey::interface:
      return "interface";
  }
  fatalError("a public-info key is none of its cases");
}

std::optional<PublicInfoKey> publicInfoKeyOf(std::string_view text) {
  const auto found =
      std::ranges::find_if(publicInfoKeys, [text](auto key) { return rawValue(key) == text; });
  return found == publicInfoKeys.end() ? std::nullopt : std::optional(*found);
}

}  // namespace lanternfold
