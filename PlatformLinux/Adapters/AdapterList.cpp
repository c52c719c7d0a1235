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
  std::ranges::sort(adapters, {}, [](const ConfiguredInterface& adapter) {
    return std::tuple(placeOf(adapter.type), std::string_view(adapter.bsdName));
  });
  tellEqualNamesApart(adapters);
  return adapters;
}

}  // namespace lanternfold
