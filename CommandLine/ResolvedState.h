// The network's state, resolved once.
#pragma once

#include "NetworkMonitor/Model/NetworkState.h"
#include "Wiring/Machine.h"
#include "Wiring/MonitorGraph.h"

namespace lanternfold {

/// The state once every one of `categories` has been resolved, or after half a minute the state as
/// it then is, not complete.
struct ResolvedState {
  NetworkState state;
  bool complete = false;
};
[[nodiscard]] ResolvedState resolveOnce(const Machine& machine, const MonitorOptions& options,
                                        NetworkSourceCategory categories);

}  // namespace lanternfold
