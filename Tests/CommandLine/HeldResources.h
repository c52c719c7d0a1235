// What a test's process holds of what must not grow.
#pragma once

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <malloc.h>
#include <string>

#include "Tests/LiveAllocations/LiveAllocations.h"

namespace lanternfold {

struct HeldResources {
  std::ptrdiff_t descriptors = 0;
  std::ptrdiff_t threads = 0;  ///< beside those of the queues, whose number is bounded
  LiveAllocations allocations;
  /// All that `malloc` has given, for the libraries in C as well; none under a sanitizer, which
  /// looks for leaks itself.
  std::size_t heapBytes = 0;
};

inline std::ptrdiff_t threadsBesideTheQueues() {
  namespace fs = std::filesystem;
  return std::ranges::count_if(fs::directory_iterator("/proc/self/task"), [](const auto& task) {
    std::string name;
    std::getline(std::ifstream(task.path() / "comm"), name);
    return name != "queue-work" && name != "background-work";
  });
}

inline HeldResources heldResources() {
  return {.descriptors = std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}),
          .threads = threadsBesideTheQueues(),
          .allocations = liveAllocations(),
          .heapBytes = ::mallinfo2().uordblks};
}

}  // namespace lanternfold
