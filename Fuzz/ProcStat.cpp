// The text of /proc/stat.
#include "PlatformLinux/Netlink/ProcStat.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Support/FatalError.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  if (lanternfold::bootTimeInProcStat(text) && !text.contains("btime")) {
    lanternfold::fatalError("a boot time was read from a text that does not name it");
  }
  return 0;
}
