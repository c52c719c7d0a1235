// The machine's interfaces as typed records.
//
// Made by: the composition. Read by: the interface resolver, the command line.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "NetBase/InterfaceNameMap.h"
#include "NetBase/NetInterface.h"
#include "NetBase/SNUtils.h"

namespace lanternfold {

/// Holds only an `SNUtils`; copies are free. Any thread; nothing fails.
class NetUtils {
 public:
  explicit NetUtils(const SNUtils& utils) : utils_(utils) {}

  /// The interfaces whose names belong to the prefix (all when none) and are not excluded.
  [[nodiscard]] InterfaceNameMap<NetInterface> interfaces(
      std::optional<std::string_view> prefixed,
      const std::optional<std::vector<std::string>>& excluding) const;

  /// The resolver's DNS servers as text, in its order.
  [[nodiscard]] std::vector<std::string> defaultDnsServers() const;

 private:
  SNUtils utils_;
};

}  // namespace lanternfold
