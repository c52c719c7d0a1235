#include "NetworkMonitor/Model/NetworkState.h"

namespace lanternfold {

NetworkState NetworkState::initial(const StringTable& strings) {
  return {
      .internet = {.displayName = strings.localized("Internet")},
      .wlan = WlanInterface{.active = true,
                            .displayName = strings.localized("Wi-Fi"),
                            // The interface below the Wi-Fi is labelled "Internet": intended.
                            .interface = {.displayName = strings.localized("Internet")}},
  };
}

std::vector<AnyNetworkSource> NetworkState::allNetworkSources() const {
  std::vector<AnyNetworkSource> sources;
  sources.reserve(3 + others.size());
  sources.emplace_back(internet);
  if (wlan) sources.emplace_back(*wlan);
  if (cellular) sources.emplace_back(*cellular);
  sources.insert(sources.end(), others.begin(), others.end());
  return sources;
}

}  // namespace lanternfold
