// How much of the heap a test program holds, for tests of memory that must not grow. A program
// that links it counts every operator new and delete.
#pragma once

#include <cstdint>

namespace lanternfold {

struct LiveAllocations {
  std::int64_t blocks = 0;
  std::int64_t bytes = 0;
};

/// Of all threads.
[[nodiscard]] LiveAllocations liveAllocations();

}  // namespace lanternfold
