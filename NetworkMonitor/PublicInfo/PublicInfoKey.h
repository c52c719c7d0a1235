// What can be known of a machine from outside, and the answers that hold it.
//
// Made by: the public-info resolvers. Read by: the internet info resolver, which merges them.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "NetworkMonitor/Model/BasicInterface.h"

namespace lanternfold {

enum class PublicInfoKey { ip, ip6, supportsIp6, isp, country, interface };

inline constexpr std::array publicInfoKeys{PublicInfoKey::ip,          PublicInfoKey::ip6,
                                           PublicInfoKey::supportsIp6, PublicInfoKey::isp,
                                           PublicInfoKey::country,     PublicInfoKey::interface};

/// The case's name, which is its form wherever keys are stored.
[[nodiscard]] std::string_view rawValue(PublicInfoKey key);
/// None for a text that is no case's name.
[[nodiscard]] std::optional<PublicInfoKey> publicInfoKeyOf(std::string_view rawValue);

/// `supportsIp6` is a bool, `interface` a record, everything else a text.
using PublicInfoValue = std::variant<bool, std::string, BasicInterface>;

/// An answer: of each key no value or one of its kind.
using PublicInfo = std::map<PublicInfoKey, PublicInfoValue>;

}  // namespace lanternfold
