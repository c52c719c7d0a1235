// Any text through the geolocation table's reader: what it takes has entries that can be answered,
// and a fault is a sentence.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "EchoService/GeolocationTableJson.h"
#include "Support/FatalError.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace lanternfold;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto table = parseGeolocationTable(text);
  if (!table) {
    if (table.error().empty() || table.error().ends_with('.')) {
      fatalError("a fault of the table is no clause");
    }
    return 0;
  }
  const auto entry = table->find(IPv4Bytes{10, 1, 2, 3});
  if (entry && (entry->isp.empty() || entry->countryCode.size() != 2)) {
    fatalError("an entry of the table lacks what it must have");
  }
  static_cast<void>(table->find(IPv6Bytes{0x20, 0x01, 0x0D, 0xB8}));
  return 0;
}
