// The other kernel's interface lists: any bytes decode to an error or to links with proper names.
#include <cstddef>
#include <cstdint>
#include <span>

#include "PlatformDarwin/InterfaceListDecoder.h"
#include "Support/FatalError.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto links = lanternfold::darwin::decodeInterfaceList(std::as_bytes(std::span(data, size)));
  if (!links) return 0;
  for (const lanternfold::LinkRecord& link : *links) {
    if (link.name.empty() || link.name.size() > 15 || link.name.find('\0') != std::string::npos) {
      lanternfold::fatalError("a decoded link has a name that no link can have");
    }
  }
  return 0;
}
