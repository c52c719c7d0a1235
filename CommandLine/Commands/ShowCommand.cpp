#include "CommandLine/Commands/ShowCommand.h"

#include "Wiring/RefreshInterval.h"

namespace lanternfold {

std::expected<ShowPlan, CommandFailure> planShow(const ShowOptions& options,
                                                 const CommonOptions& common) {
  ShowPlan plan{.detach = options.detach, .hostArguments = argumentsOf(common)};
  if (options.refreshInterval) {
    const auto interval = parseRefreshInterval(*options.refreshInterval);
    if (!interval) return std::unexpected(interval.error());
    plan.hostArguments.push_back("--refresh-interval=" + std::to_string(interval->count()));
  }
  return plan;
}

std::expected<void, CommandFailure> runShow(const ShowPlan& plan, const Machine& machine) {
  if (plan.detach) return machine.hostStarter.startDetached(plan.hostArguments);
  return std::unexpected(machine.hostStarter.become(plan.hostArguments));
}

}  // namespace lanternfold
