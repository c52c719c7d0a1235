// The other kernel's boot time: exactly the values of 16 bytes may name a moment.
#include <cstddef>
#include <cstdint>
#include <span>

#include "PlatformDarwin/BootTimeDecoder.h"
#include "Support/FatalError.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto moment = lanternfold::darwin::decodeBootTime(std::as_bytes(std::span(data, size)));
  if (moment && size != 16) {
    lanternfold::fatalError("a boot time was read from a value that is not 16 bytes long");
  }
  return 0;
}
