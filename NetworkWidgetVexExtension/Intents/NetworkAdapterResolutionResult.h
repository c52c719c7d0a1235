// What became of the adapter of a configuration.
//
// Made by: whoever serves the intent. Read by: the host that asks for the intent's parameters.
#pragma once

#include <optional>
#include <utility>
#include <vector>

#include "NetworkWidgetVexExtension/Intents/IntentObject.h"
#include "NetworkWidgetVexExtension/Intents/NetworkAdapter.h"

namespace lanternfold {

class NetworkAdapterResolutionResult {
 public:
  enum class Outcome { success, disambiguation, confirmationRequired };

  [[nodiscard]] static NetworkAdapterResolutionResult success(NetworkAdapter resolved);
  /// The user is to choose one of them.
  [[nodiscard]] static NetworkAdapterResolutionResult disambiguation(
      std::vector<NetworkAdapter> adapters);
  /// The user is to be asked whether he means the adapter; none leaves it to him.
  [[nodiscard]] static NetworkAdapterResolutionResult confirmationRequired(
      std::optional<NetworkAdapter> adapter);

  /// The factories that results of every kind have. An object of any kind is no adapter: each stops
  /// the program.
  [[noreturn]] static NetworkAdapterResolutionResult successWithResolvedObject(
      const IntentObject& resolved);
  [[noreturn]] static NetworkAdapterResolutionResult disambiguationWithObjects(
      const std::vector<IntentObject>& objects);
  [[noreturn]] static NetworkAdapterResolutionResult confirmationRequiredWithObject(
      const std::optional<IntentObject>& object);

  [[nodiscard]] Outcome outcome() const { return outcome_; }
  /// The one of a success, those to choose from, or the one to confirm, if any.
  [[nodiscard]] const std::vector<NetworkAdapter>& adapters() const { return adapters_; }

  friend bool operator==(const NetworkAdapterResolutionResult&,
                         const NetworkAdapterResolutionResult&) = default;

 private:
  NetworkAdapterResolutionResult(Outcome outcome, std::vector<NetworkAdapter> adapters)
      : outcome_(outcome), adapters_(std::move(adapters)) {}

  Outcome outcome_;
  std::vector<NetworkAdapter> adapters_;
};

}  // namespace lanternfold
