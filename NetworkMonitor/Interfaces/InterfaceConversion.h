// From the kernel's typed record to the record that the rest of the system shows. Pure.
#pragma once

#include "NetBase/NetInterface.h"
#include "NetworkMonitor/Interfaces/AdapterCatalogue.h"
#include "NetworkMonitor/Model/BasicInterface.h"

namespace lanternfold {

/// Puts together what was found of one interface. An IPv4 address without netmask, gateway or block
/// is dropped, and so is an IPv6 address without prefix, gateway or block; the others keep their
/// order, and a family is supported when one is left. Without link figures there is no hardware
/// address.
[[nodiscard]] BasicInterface basicInterface(const NetInterface& interface,
                                            const ConnectionMetrics& counters,
                                            AdapterDescription adapter);

}  // namespace lanternfold
