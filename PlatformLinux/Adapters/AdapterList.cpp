#include "PlatformLinux/Adapters/AdapterList.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace lanternfold {

namespace {

int placeOf(std::optional<ConfiguredInterfaceType> type) {
  if (!type) return 4;
  switch (*type) {
    case ConfiguredInterfaceType::ethernet:
      return 0;
    case ConfiguredInterfaceType::ieee80211:
      return 1;
    case ConfiguredInterfaceType::bluetooth:
      return 2;
    case ConfiguredInterfaceType::other:
      break;
  }
  return 3;
}

void tellEqualNamesApart(std::vector<ConfiguredInterface>& adapters) {
  std::map<std::string, int> occurrences;
  for (const ConfiguredInterface& adapter : adapters) {
    if (adapter.localizedDisplayName) ++occurrences[*adapter.localizedDisplayName];
  }
  for (ConfiguredInterface& adapter : adapters) {
    auto& name = adapter.localizedDisplayName;
    if (name && occurrences[*name] > 1) *name += " (" + adapter.bsdName + ")";
  }
}

}  // namespace

std::vector<ConfiguredInterface> arrangedAdapters(std::vector<ConfiguredInterface> adapters) {
  std::sort(adapters.begin(), adapters.end(),
            [](const ConfiguredInterface& one, const ConfiguredInterface& other) {
              return std::tuple(placeOf(one.type), std::string_view(one.bsdName)) <
                     std::tuple(placeOf(other.type), std::string_view(other.bsdName));
            });
  tellEqualNamesApart(adapters);
  return adapters;
}

}  // namespace lanternfold
