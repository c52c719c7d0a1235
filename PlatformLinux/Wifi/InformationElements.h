// What a network says of itself in the information elements of its beacons and probe responses.
//
// Made by: `decodeInformationElements`. Read by: the BSS decoder, the mappings, the report. The
// bytes come from the air: anybody may have sent them.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "PlatformLinux/Wifi/SecurityElement.h"
#include "PlatformLinux/Wifi/WifiGeneration.h"

namespace lanternfold {

struct InformationElements {
  /// The name's raw bytes, at most 32. Absent when there is no such element; empty or all zero when
  /// the network hides its name.
  std::optional<std::vector<std::uint8_t>> ssid;
  std::optional<SecurityElement> rsn;
  std::optional<SecurityElement> wpa;
  /// An RSN or WPA element is there and makes no sense, or the elements end inside one: what is
  /// missing above may only be illegible.
  bool isDamaged = false;
  /// The network is one half of a pair, of which one is open and the other encrypts without a
  /// password.
  bool isOweTransition = false;
  /// The latest generation of which both the capabilities and the operation are announced.
  WifiGeneration generation = WifiGeneration::legacy;
  /// Whether every rate announced is one of 802.11b's; false when none is announced.
  bool onlyOldestRates = false;
  friend bool operator==(const InformationElements&, const InformationElements&) = default;
};

/// Never fails: an element whose length is a lie ends the walk, and what came before it stands. Of
/// an element that is there twice the first counts, as for the kernel; an element of a length that
/// it cannot have counts as not there.
[[nodiscard]] InformationElements decodeInformationElements(std::span<const std::uint8_t> bytes);

}  // namespace lanternfold
