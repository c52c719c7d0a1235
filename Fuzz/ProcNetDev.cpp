// The text of /proc/net/dev.
#include "PlatformLinux/Netlink/ProcNetDev.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  static_cast<void>(lanternfold::parseProcNetDev(text));
  return 0;
}
