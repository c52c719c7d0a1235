// A network state as text for people.
#pragma once

#include "NetworkMonitor/Model/NetworkState.h"
#include "Wiring/Console.h"

namespace lanternfold {

/// Each source of `categories` as a heading and its rows; a line that says so when there is none.
void writeStateText(const NetworkState& state, NetworkSourceCategory categories,
                    const StringTable& strings, const Console& console);

}  // namespace lanternfold
