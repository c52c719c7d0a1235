// The information elements of a network, as they came from the air, through their decoder, the
// mapping of its protection and the name's text.
#include "PlatformLinux/Wifi/InformationElements.h"

#include <cstddef>
#include <cstdint>

#include "PlatformLinux/Wifi/SuiteNames.h"
#include "PlatformLinux/Wifi/WifiNames.h"
#include "PlatformLinux/Wifi/WifiSecurityMapping.h"
#include "Support/FatalError.h"

namespace {

using lanternfold::fatalError;

void checkSecurity(const std::optional<lanternfold::SecurityElement>& element) {
  if (!element) return;
  if (element->pairwiseCiphers.empty() || element->authentications.empty()) {
    fatalError("a decoded security element has an empty list");
  }
  if (element->pairwiseCiphers.size() > 63 || element->authentications.size() > 63) {
    fatalError("a decoded security element has more suites than an element holds");
  }
  static_cast<void>(lanternfold::cipherName(element->groupCipher));
  static_cast<void>(lanternfold::authenticationName(element->authentications.front()));
}

void checkName(const std::vector<std::uint8_t>& ssid) {
  if (ssid.size() > 32) fatalError("a decoded network name is too long");
  for (const char character : lanternfold::ssidText(ssid)) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x20 || byte == 0x7F) fatalError("a network name shows a control character");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto elements = lanternfold::decodeInformationElements({data, size});
  if (elements.ssid) checkName(*elements.ssid);
  checkSecurity(elements.rsn);
  checkSecurity(elements.wpa);
  for (const bool hasPrivacy : {false, true}) {
    const auto security = lanternfold::securityOf(elements, hasPrivacy);
    if (elements.isDamaged && security == lanternfold::WifiSecurity::none) {
      fatalError("illegible elements were taken for an open network");
    }
  }
  return 0;
}
