#include "NetworkMonitor/Monitor/NullResolvers.h"

namespace lanternfold {

void NullInternetInfoResolver::resolve(UpdateHandler updateHandler) {
  updateHandler(NetworkState::initial(strings_).internet, true, {});
}

}  // namespace lanternfold
