// From what a hardware database says of an adapter to the name a person is shown.
//
// Read by: the adapter list.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

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

/// An adapter's kernel name with its human name, if it has one.
struct NamedAdapter {
  std::string kernelName;
  std::optional<std::string> humanName;
  friend bool operator==(const NamedAdapter&, const NamedAdapter&) = default;
};

/// Adds the kernel's name to every human name that occurs more than once: "… (enp3s0)". The
/// kernel's name stays with the adapter from one day to the next, a number would not.
void disambiguate(std::vector<NamedAdapter>& adapters);

}  // namespace lanternfold
