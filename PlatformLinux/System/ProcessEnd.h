// Waiting for the end of a process, and no longer than that is worth.
//
// Used by: whoever has asked a process to end.
#pragma once

#include <chrono>
#include <sys/types.h>

namespace lanternfold {

/// Whether `process` has ended, or there is none of that number. Of a child that is so before it is
/// reaped. Blocks for `limit` at the most.
[[nodiscard]] bool waitForEnd(pid_t process, std::chrono::milliseconds limit);

}  // namespace lanternfold
