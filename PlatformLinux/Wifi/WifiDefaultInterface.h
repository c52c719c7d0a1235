// Which of a machine's Wi-Fi interfaces is its default one. Pure.
//
// Read by: `LinuxWifiClient`.
#pragma once

#include <span>
#include <vector>

#include "PlatformLinux/Wifi/WifiInterfaceMessage.h"

namespace lanternfold {

/// The interfaces that can be the default one, best first: those whose network the kernel names,
/// then managed ones, then ad hoc ones, access points and meshes; among equals the lowest index.
/// Monitors, Wi-Fi Direct and other second uses of a radio never are, nor is what has no network
/// interface.
[[nodiscard]] std::vector<WifiInterfaceMessage> defaultInterfaceCandidates(
    std::span<const WifiInterfaceMessage> interfaces);

/// Whether such an interface joins networks: a managed or ad hoc one.
[[nodiscard]] bool joinsNetworks(const WifiInterfaceMessage& interface);

}  // namespace lanternfold
