// How much of the heap the program of these tests holds.
#pragma once

#include <cstdint>

namespace lanternfold::simulation {

struct LiveAllocations {
  std::int64_t blocks = 0;
  std::int64_t bytes = 0;
};

/// Of all threads.
[[nodiscard]] LiveAllocations liveAllocations();

}  // namespace lanternfold::simulation
