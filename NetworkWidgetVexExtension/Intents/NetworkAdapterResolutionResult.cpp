#include "NetworkWidgetVexExtension/Intents/NetworkAdapterResolutionResult.h"

#include "Support/FatalError.h"

namespace lanternfold {
namespace {

/// Whose the unavailable factories are.
constexpr const char* unavailableAt = "NetworkWidgetVexExtension/NetworkAdapter";

}  // namespace

using Result = NetworkAdapterResolutionResult;

Result Result::success(NetworkAdapter resolved) {
  return {Outcome::success, {std::move(resolved)}};
}

Result Result::disambiguation(std::vector<NetworkAdapter> adapters) {
  return {Outcome::disambiguation, std::move(adapters)};
}

Result Result::confirmationRequired(std::optional<NetworkAdapter> adapter) {
  std::vector<NetworkAdapter> adapters;
  if (adapter) adapters.push_back(*std::move(adapter));
  return {Outcome::confirmationRequired, std::move(adapters)};
}

Result Result::successWithResolvedObject(const IntentObject&) { fatalErrorAt(unavailableAt); }

Result Result::disambiguationWithObjects(const std::vector<IntentObject>&) {
  fatalErrorAt(unavailableAt);
}

Result Result::confirmationRequiredWithObject(const std::optional<IntentObject>&) {
  fatalErrorAt(unavailableAt);
}

}  // namespace lanternfold
