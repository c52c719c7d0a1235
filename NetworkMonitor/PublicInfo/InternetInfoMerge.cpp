#include "NetworkMonitor/PublicInfo/InternetInfoMerge.h"

#include "Support/FatalError.h"

namespace lanternfold {
namespace {

template <typename Value>
const Value& valueOf(const PublicInfoValue& value) {
  const auto* const held = std::get_if<Value>(&value);
  if (held == nullptr) fatalError("a public-info resolver answered a value of another kind");
  return *held;
}

void mergeSupport(bool supportsIPv6, InternetInfo& info) {
  if (!supportsIPv6 || info.ipv6) info.supportsIPv6 = supportsIPv6;
}

void mergeValue(PublicInfoKey key, const PublicInfoValue& value, InternetInfo& info) {
  switch (key) {
    case PublicInfoKey::ip:
      info.ip = valueOf<std::string>(value);
      return;
    case PublicInfoKey::ip6:
      info.ipv6 = valueOf<std::string>(value);
      return;
    case PublicInfoKey::supportsIp6:
      mergeSupport(valueOf<bool>(value), info);
      return;
    case PublicInfoKey::isp:
      info.isp = valueOf<std::string>(value);
      return;
    case PublicInfoKey::country:
      info.country = valueOf<std::string>(value);
      return;
    case PublicInfoKey::interface:
      info.interface = valueOf<BasicInterface>(value);
      return;
  }
  fatalError("a public-info key is none of its cases");
}

}  // namespace

void merge(const PublicInfo& answer, InternetInfo& info) {
  // In the order of the keys, in which the address comes before its support.
  for (const auto& [key, value] : answer) mergeValue(key, value, info);
  const bool isSupportUnsaid = !answer.contains(PublicInfoKey::supportsIp6);
  if (answer.contains(PublicInfoKey::ip6) && isSupportUnsaid) info.supportsIPv6 = true;
}

}  // namespace lanternfold
