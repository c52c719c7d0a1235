#include "Wiring/MonitorGraph.h"

namespace lanternfold {

std::shared_ptr<InterfaceResolver> makeInterfaceResolver(const Machine& machine) {
  return makePosixInterfaceResolver(machine.platform, machine.metricsReader);
}

std::shared_ptr<NetworkStateMonitor> makeProgramMonitor(const Machine& machine,
                                                        const MonitorOptions& options) {
  return makeNetworkStateMonitor(options.appGroupId, options.skipGeoIP,
                                 {.platform = machine.platform,
                                  .metricsReader = machine.metricsReader,
                                  .serviceUrls = options.serviceUrls});
}

}  // namespace lanternfold
