// Why counters could not be given: read from the system, or sampled into a storage.
//
// Made by: the counter readers, of which those over a recorder also sample. Read by: whoever asks
// one of them and tells the user.
#pragma once

#include <string>
#include <variant>

#include "NetworkMonitor/Metrics/Lock.h"
#include "NetworkMonitor/Metrics/MetricsSaveError.h"

namespace lanternfold {

enum class ConnectionMetricsReaderError {
  failedGetIf,  ///< enumerating the interfaces failed
};

/// The first alternative of a plain reader; of a sampling step whichever operation failed.
using ConnectionMetricsError =
    std::variant<ConnectionMetricsReaderError, LockError, MetricsSaveError>;

/// A clause for a message, with what to do where a user can do something.
[[nodiscard]] std::string describe(const ConnectionMetricsError& error);

}  // namespace lanternfold
