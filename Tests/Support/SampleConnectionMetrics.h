// A counter record that tells each of its eight fields from the others.
#pragma once

#include "NetworkMonitor/Metrics/ConnectionMetrics.h"

namespace lanternfold {

/// Every field holds its place in the record, counted from 1.
inline constexpr ConnectionMetrics oneToEight{.sentBytes = 1,
                                              .recvBytes = 2,
                                              .sentError = 3,
                                              .recvError = 4,
                                              .sentPacket = 5,
                                              .recvPacket = 6,
                                              .collisions = 7,
                                              .mtu = 8};

}  // namespace lanternfold
