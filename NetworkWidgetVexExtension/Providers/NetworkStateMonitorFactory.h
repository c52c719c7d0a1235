// Whoever makes the monitors that the providers ask, one for each request.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "NetworkMonitor/Monitor/NetworkStateMonitor.h"

namespace lanternfold {

/// A monitor that belongs to one request, not started; never null. Without a group it keeps what it
/// keeps where all that belongs to no group is kept.
using NetworkStateMonitorFactory = std::function<std::shared_ptr<NetworkStateMonitor>(
    const std::optional<std::string>& appGroupId, bool skipGeoIP)>;

}  // namespace lanternfold
