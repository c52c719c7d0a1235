// What nl80211 and rtnetlink answer on a machine that has joined one of many networks around it, in
// the amounts and lengths that a kernel sends.
//
// Made by: the benchmarks of the Wi-Fi.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>

#include "Benchmarks/ReplayedNetlink.h"

namespace lanternfold {

inline constexpr std::uint32_t replayedInterfaceIndex = 5;
/// Of nl80211.
inline constexpr std::uint16_t replayedMessageType = 0x1C;

/// Of generic netlink, with so many cells in the list, of which the last is the joined one.
[[nodiscard]] std::map<ReplayedNetlink::Question, ReplayedNetlink::Datagrams> wifiAnswers(
    std::size_t cellCount);

/// Of rtnetlink: the link of the interface.
[[nodiscard]] std::map<ReplayedNetlink::Question, ReplayedNetlink::Datagrams> linkAnswers();

}  // namespace lanternfold
