// The text of a link's "uevent" file.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "PlatformLinux/Adapters/DeviceTree.h"
#include "Support/FatalError.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto file = lanternfold::parseLinkEventFile(text);
  if (!text.contains(file.deviceType) || file.deviceType.contains('\n')) {
    lanternfold::fatalError("a device type was read that is no line's end");
  }
  return 0;
}
