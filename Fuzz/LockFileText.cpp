// Feeds any text to the decoder of a lock's text: what it accepts is a number that can be compared.
#include "NetworkMonitor/Metrics/LockFileText.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace lanternfold;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto time = decodeLockFileText(text);
  if (!time) return 0;
  const bool hasOnlyItsCharacters =
      text.find_first_not_of("+-.0123456789eE") == std::string_view::npos;
  if (!std::isfinite(time->count()) || !hasOnlyItsCharacters) std::abort();
  return 0;
}
