// The public side of the connection, composed of what several public-info resolvers answer.
//
// Made by: the composition. Read by: the network state monitor.
#pragma once

#include <memory>
#include <vector>

#include "NetBase/NetUtils.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsReader.h"
#include "NetworkMonitor/Monitor/Resolvers.h"
#include "NetworkMonitor/PublicInfo/PublicInfoResolver.h"
#include "Platform/Dispatch.h"
#include "Platform/InterfaceNaming.h"

namespace lanternfold {

/// Any thread; every report comes on the main queue: one with each answer, in the order in which
/// they arrive, with its error if it is one; and one more, complete and without an error, when all
/// have answered. A resolution keeps itself, and not this object, until then.
class StandardInternetInfoResolver final : public InternetInfoResolver {
 public:
  /// What the resolver needs of the system. The references outlive it and its resolutions.
  struct Environment {
    DispatchQueue& mainQueue;
    const InterfaceNaming& naming;
    NetUtils netUtils;
  };

  /// Neither `metricsReader` nor a configuration's resolver may be null.
  StandardInternetInfoResolver(std::vector<PublicInfoResolverConfiguration> resolvers,
                               std::shared_ptr<ConnectionMetricsReader> metricsReader,
                               const Environment& environment);

  /// The DNS servers and the counters are read before the return; the counters are the sums over
  /// the adapters ("en") and the cellular interfaces ("pdp_ip"), and zero when they cannot be read.
  void resolve(UpdateHandler updateHandler) override;

 private:
  [[nodiscard]] InternetInfo initialInfo() const;
  [[nodiscard]] ConnectionMetrics internetMetrics() const;

  const std::vector<PublicInfoResolverConfiguration> resolvers_;
  const std::shared_ptr<ConnectionMetricsReader> metricsReader_;
  const Environment environment_;
};

}  // namespace lanternfold
