// Any network source, by value: the closed set of its kinds, and what each of them says of itself.
//
// Made by: the network state. Read by: the widget views, the command line.
#pragma once

#include <string>
#include <variant>

#include "NetworkMonitor/Model/BasicInterface.h"
#include "NetworkMonitor/Model/CellularProvider.h"
#include "NetworkMonitor/Model/InternetInfo.h"
#include "NetworkMonitor/Model/WlanInterface.h"

namespace lanternfold {

using AnyNetworkSource =
    std::variant<InternetInfo, WlanInterface, CellularProvider, BasicInterface>;

[[nodiscard]] bool activeOf(const AnyNetworkSource& source);
[[nodiscard]] const std::string& displayNameOf(const AnyNetworkSource& source);
[[nodiscard]] const ConnectionMetrics& metricsOf(const AnyNetworkSource& source);
[[nodiscard]] NetworkSourceCategory categoryOf(const AnyNetworkSource& source);
[[nodiscard]] SourceList listRepresentationOf(const AnyNetworkSource& source,
                                              const StringTable& strings);
[[nodiscard]] SourceList compressedListRepresentationOf(const AnyNetworkSource& source,
                                                        const StringTable& strings);

}  // namespace lanternfold
