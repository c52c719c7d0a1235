// The interface that carries the traffic: the first one of the network path.
//
// Made by: the composition. Read by: the internet info resolver.
#pragma once

#include <chrono>
#include <memory>

#include "NetworkMonitor/Monitor/Resolvers.h"
#include "NetworkMonitor/PublicInfo/PublicInfoResolver.h"
#include "Platform/PathMonitor.h"

namespace lanternfold {

/// Held by `std::shared_ptr`; any thread. Completes on the main queue, within `longestWait`, but at
/// once when it is not asked for `interface`. A request does not keep its resolver: one that is
/// dropped meanwhile lets its requests time out. A later request leaves the earlier ones alone.
class ActiveInterfacePublicInfoResolver final
    : public PublicInfoResolver,
      public std::enable_shared_from_this<ActiveInterfacePublicInfoResolver> {
 public:
  static constexpr std::chrono::seconds longestWait{5};

  /// What the resolver needs of the system. All outlive it and its requests.
  struct Environment {
    PathMonitorFactory& pathMonitors;
    DispatchQueue& mainQueue;
  };

  /// `interfaceResolver` may not be null; it is asked on the main queue.
  ActiveInterfacePublicInfoResolver(std::shared_ptr<InterfaceResolver> interfaceResolver,
                                    const Environment& environment);

  [[nodiscard]] Keys supportedKeys() const override { return {PublicInfoKey::interface}; }
  /// The answer is empty when the path leads nowhere, or the interface resolver does not know the
  /// name of its first interface; `PublicInfoResolverError::timeout` when no path was reported in
  /// time.
  void resolve(Keys keys, Completion completion) override;

 private:
  class Request;

  void begin(Completion completion);
  [[nodiscard]] PublicInfo activeInterface(const NetworkPath& path) const;

  const std::shared_ptr<InterfaceResolver> interfaceResolver_;
  const Environment environment_;
};

}  // namespace lanternfold
