// The application group whose container and defaults the widgets share with the main application,
// as an environment value.
//
// Read by: the providers, which hand it to their monitors. Nothing in the extension sets another
// one; a program's user may.
#pragma once

#include <optional>
#include <string>

namespace lanternfold {

inline constexpr const char* defaultAppGroupId = "7RKM3PW2ZB.net.quernaple.LanternfoldX";

struct AppGroupIdEnvironmentKey {
  /// None for no group.
  using Value = std::optional<std::string>;
  [[nodiscard]] static Value defaultValue() { return defaultAppGroupId; }
};

}  // namespace lanternfold
