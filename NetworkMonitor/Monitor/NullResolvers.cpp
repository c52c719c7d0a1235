#include "NetworkMonitor/Monitor/NullResolvers.h"

namespace lanternfold {

void NullInternetInfoResolver::resolve(UpdateHandler updateHandler) {
  updateHandler(NetworkState::initial(strings_).internet, true, {});
}

std::expected<std::optional<WlanInterface>, WlanInterfaceResolverError>
NullWlanInterfaceResolver::wlanInterface() {
  return std::nullopt;
}

}  // namespace lanternfold
