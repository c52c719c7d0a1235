// How the adapter list is put in order and equal names are told apart.
//
// Read by: `LinuxNetworkConfiguration`.
#pragma once

#include <vector>

#include "Platform/NetworkConfiguration.h"

namespace lanternfold {

/// Wired adapters first, then Wi-Fi, Bluetooth, others and those of unknown type, each by name. A
/// human name that occurs more than once gets the kernel's name added: "… (enp3s0)". The kernel's
/// name stays with the adapter from one day to the next, a number would not.
[[nodiscard]] std::vector<ConfiguredInterface> arrangedAdapters(
    std::vector<ConfiguredInterface> adapters);

}  // namespace lanternfold
