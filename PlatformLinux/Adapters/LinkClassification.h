// Which links are adapters, which are modems, and of what type each is: one table of rules on link
// kind and device.
//
// Made from: `LinkFacts`. Read by: the interface naming, the adapter list and the path monitor.
#pragma once

#include <optional>

#include "Platform/NetworkConfiguration.h"
#include "Platform/NetworkPath.h"
#include "PlatformLinux/Adapters/LinkFacts.h"

namespace lanternfold {

/// The family of names that a link counts as.
enum class LinkFamily {
  none,
  adapter,   ///< what other systems name "en0", "en1"
  cellular,  ///< what other systems name "pdp_ip0"
};

struct LinkClass {
  LinkFamily family = LinkFamily::none;
  PathInterfaceType pathType = PathInterfaceType::other;
  /// Absent for links that the adapter list leaves out.
  std::optional<ConfiguredInterfaceType> configuredType;
  friend bool operator==(const LinkClass&, const LinkClass&) = default;
};

/// Total: a link that no rule knows counts as no family, is of type `other` and is not listed.
///
/// A bond or team counts in place of the links below it, which keep their type and their place in
/// the adapter list but belong to no family. A Bluetooth network counts as an adapter.
[[nodiscard]] LinkClass classifyLink(const LinkFacts& link);

/// The family that a prefix of names stands for: "en" adapters, "pdp_ip" modems, any other none.
[[nodiscard]] LinkFamily familyOfPrefix(std::string_view prefix);

}  // namespace lanternfold
