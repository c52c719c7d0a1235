// The bytes of a stored dictionary: what is accepted is a value that settings take, and survives a
// round trip.
#include <cstddef>
#include <cstdint>
#include <span>

#include "Platform/UserDefaults.h"
#include "PlatformLinux/Defaults/DictionaryCoding.h"
#include "Support/FatalError.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace lanternfold;
  const auto dictionary = decodeDictionary(std::as_bytes(std::span(data, size)));
  if (!dictionary) return 0;
  if (!isUserDefaultsValue(*dictionary))
    fatalError("a value was decoded that settings do not take");
  if (decodeDictionary(encodeDictionary(*dictionary)) != dictionary) {
    fatalError("a stored dictionary did not survive a round trip");
  }
  return 0;
}
