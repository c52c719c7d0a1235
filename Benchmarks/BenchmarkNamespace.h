// A network namespace full of links, for the benchmarks.
#pragma once

#include <cstddef>

namespace lanternfold {

/// Moves the calling thread into a new network namespace with `linkCount` links in all: the
/// loopback link and pairs of veth ends, of which each has an IPv4 address; the first two are up
/// and carry a default route. False, with a line on standard error, when that needs rights or tools
/// that are not there.
[[nodiscard]] bool enterBenchmarkNamespace(std::size_t linkCount);

}  // namespace lanternfold
