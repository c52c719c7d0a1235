// Interfaces as a table for people.
#pragma once

#include <vector>

#include "NetworkMonitor/Model/BasicInterface.h"
#include "Wiring/Console.h"

namespace lanternfold {

/// One line an interface, and one more for each further IPv4 address.
void writeInterfaceTable(const std::vector<BasicInterface>& interfaces, const StringTable& strings,
                         const Console& console);

}  // namespace lanternfold
