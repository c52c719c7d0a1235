// Feeds any text to the decoder of a storage's file: what it accepts must survive a round trip, and
// what it refuses must come with a reason that can be printed.
#include "NetworkMonitor/Metrics/ConnectionMetricsFileJson.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace lanternfold;
  const auto file = decodeConnectionMetricsFile({reinterpret_cast<const char*>(data), size});
  if (!file) {
    const std::string reason = describe(file.error());
    const bool isVisible = std::ranges::all_of(reason, [](char c) { return c >= ' ' && c <= '~'; });
    if (reason.empty() || reason.size() > 1000 || !isVisible) std::abort();
    return 0;
  }
  const auto encoded = encodeConnectionMetricsFile(*file);
  if (!encoded || encoded->recordsLeftOut != 0) std::abort();
  if (decodeConnectionMetricsFile(encoded->text) != *file) std::abort();
  return 0;
}
