// The machine's interfaces as `BasicInterface` records: addresses and link figures of the kernel,
// counters of a reader, type and human name of the system's configuration.
//
// Made by: the composition. Read by: the monitor, the command line.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "NetBase/NetUtils.h"
#include "NetworkMonitor/Interfaces/AdapterCatalogue.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsReader.h"
#include "NetworkMonitor/Monitor/Resolvers.h"
#include "Platform/NetworkConfiguration.h"
#include "Platform/StringTable.h"

namespace lanternfold {

/// Keeps no state between calls; any thread that the counter reader allows. Nothing is excluded by
/// itself: loopback and tunnels are listed too. An interface is left out when the link layer
/// reports no figures for it, when the counters cannot be read or when the reader does not know it.
///
/// The counters are read afresh for every interface, the list of adapters once for every operation.
/// Results are in ascending order of the names' bytes.
class PosixInterfaceResolver final : public InterfaceResolver {
 public:
  /// `metricsReader` may be shared; `configuration` and `strings` outlive the resolver.
  PosixInterfaceResolver(std::shared_ptr<ConnectionMetricsReader> metricsReader,
                         const NetUtils& netUtils, const NetworkConfiguration& configuration,
                         const StringTable& strings);

  [[nodiscard]] std::vector<BasicInterface> interfaces() override;
  [[nodiscard]] std::vector<BasicInterface> interfacesExcluding(
      const std::vector<std::string>& names) override;
  [[nodiscard]] std::vector<BasicInterface> interfacesPrefixed(std::string_view prefix) override;
  [[nodiscard]] std::optional<BasicInterface> interfaceNamed(std::string_view name) override;

 private:
  [[nodiscard]] std::vector<BasicInterface> convertAll(
      const InterfaceNameMap<NetInterface>& interfaces) const;
  [[nodiscard]] std::optional<BasicInterface> convert(const NetInterface& interface,
                                                      const AdapterCatalogue& adapters) const;
  [[nodiscard]] std::optional<ConnectionMetrics> countersOf(const std::string& name) const;

  std::shared_ptr<ConnectionMetricsReader> metricsReader_;
  NetUtils netUtils_;
  const NetworkConfiguration& configuration_;
  const StringTable& strings_;
};

}  // namespace lanternfold
