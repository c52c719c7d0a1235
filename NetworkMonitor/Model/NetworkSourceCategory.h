// The categories of network sources, as an option set.
#pragma once

#include <cstdint>

#include "Support/OptionSet.h"

namespace lanternfold {

class NetworkSourceCategory : public OptionSet<NetworkSourceCategory> {
 public:
  using OptionSet::OptionSet;

  [[nodiscard]] static constexpr NetworkSourceCategory internet() {
    return NetworkSourceCategory(1);
  }
  [[nodiscard]] static constexpr NetworkSourceCategory wlan() { return NetworkSourceCategory(2); }
  [[nodiscard]] static constexpr NetworkSourceCategory cellular() {
    return NetworkSourceCategory(4);
  }
  [[nodiscard]] static constexpr NetworkSourceCategory other() { return NetworkSourceCategory(8); }
  [[nodiscard]] static constexpr NetworkSourceCategory all() { return NetworkSourceCategory(15); }
};

}  // namespace lanternfold
