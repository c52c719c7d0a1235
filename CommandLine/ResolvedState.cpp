#include "CommandLine/ResolvedState.h"

#include <chrono>
#include <system_error>

namespace lanternfold {

ResolvedState resolveOnce(const Machine& machine, const MonitorOptions& options,
                          NetworkSourceCategory categories) {
  constexpr std::chrono::seconds limit{30};
  ResolvedState resolved{.state = NetworkState::initial(machine.platform.strings)};
  bool running = false;
  const auto monitor = makeProgramMonitor(machine, options);
  monitor->setActiveCategories(categories);
  monitor->setStateUpdateHandler([&](const NetworkState& state, bool complete, std::error_code) {
    if (resolved.complete) return;
    resolved = {.state = state, .complete = complete};
    if (complete && running) machine.mainLoop.stop();
  });
  monitor->refresh();
  running = true;
  if (!resolved.complete) machine.mainLoop.runFor(limit);
  // What still answers later must not reach into this function.
  monitor->setStateUpdateHandler(nullptr);
  return resolved;
}

}  // namespace lanternfold
