// A resolver that lets its counter reader know where one walk over the interfaces begins.
//
// Made by: the wiring of the monitor.
#pragma once

#include <memory>

#include "NetworkMonitor/Metrics/RememberingMetricsReader.h"
#include "NetworkMonitor/Monitor/Resolvers.h"

namespace lanternfold {

/// Synchronous; any thread. Two walks at once share what the later one begins with.
class WalkingInterfaceResolver final : public InterfaceResolver {
 public:
  /// `walker` reads its counters from `reader`.
  WalkingInterfaceResolver(std::shared_ptr<InterfaceResolver> walker,
                           std::shared_ptr<RememberingMetricsReader> reader);

  [[nodiscard]] std::vector<BasicInterface> interfaces() override;
  [[nodiscard]] std::vector<BasicInterface> interfacesExcluding(
      const std::vector<std::string>& names) override;
  [[nodiscard]] std::vector<BasicInterface> interfacesPrefixed(std::string_view prefix) override;
  [[nodiscard]] std::optional<BasicInterface> interfaceNamed(std::string_view name) override;

 private:
  [[nodiscard]] InterfaceResolver& beginWalk() const;

  std::shared_ptr<InterfaceResolver> walker_;
  std::shared_ptr<RememberingMetricsReader> reader_;
};

}  // namespace lanternfold
