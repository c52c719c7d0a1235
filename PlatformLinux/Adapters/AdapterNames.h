// From what a hardware database says of an adapter to the name a person is shown.
//
// Read by: the adapter list.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace lanternfold {

/// Vendor and model as the hardware database has them.
struct HardwareNames {
  std::string vendor;
  std::string model;
  friend bool operator==(const HardwareNames&, const HardwareNames&) = default;
};

/// "Intel Corporation" and "82574L Gigabit Network Connection" make "Intel 82574L Gigabit": without
/// the words of company law, without what every adapter is, the vendor once. A short name that the
/// vendor gives in brackets stands for it. Plain text of at most 96 bytes; none without a model,
/// since a vendor alone names nothing.
[[nodiscard]] std::optional<std::string> adapterName(const HardwareNames& names);

}  // namespace lanternfold
