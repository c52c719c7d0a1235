// What the programs are called, in their help and in front of their failures.
#pragma once

namespace lanternfold {

/// Also what the public services see of who asks.
inline constexpr const char* programName = "lanternfold-widgets";

inline constexpr const char* extensionProgramName = "lanternfold-widget-extension";
inline constexpr const char* hostProgramName = "lanternfold-widget-host";

}  // namespace lanternfold
