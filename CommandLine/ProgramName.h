// What the program is called, in its help and in front of its failures.
#pragma once

namespace lanternfold {

inline constexpr const char* programName = "lanternfold-widgets";

}  // namespace lanternfold
