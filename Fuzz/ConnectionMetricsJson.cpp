// Feeds any text to the decoder of counter records: what it accepts must survive a round trip, and
// what it refuses must come with a reason.
#include "NetworkMonitor/Metrics/ConnectionMetricsJson.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace lanternfold;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  if (const auto metrics = decodeConnectionMetrics(text)) {
    // A space keeps the text from being read in the short way of one just as it is written.
    const bool hasRoom = size < longestConnectionMetricsJsonBytes;
    if (hasRoom && decodeConnectionMetrics(std::string(text) + " ") != *metrics) std::abort();
    if (decodeConnectionMetrics(encodeConnectionMetrics(*metrics)) != *metrics) std::abort();
  } else if (describe(metrics.error()).empty()) {
    std::abort();
  }
  if (const auto type = decodeConnectionMetricsType(text)) {
    if (decodeConnectionMetricsType(encodeConnectionMetricsType(*type)) != *type) std::abort();
  }
  return 0;
}
