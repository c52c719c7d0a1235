// Resolvers that know nothing, for a monitor whose user has no way to resolve a category.
//
// Made by: the compositions. Read by: the network state monitor.
#pragma once

#include "NetworkMonitor/Monitor/Resolvers.h"

namespace lanternfold {

/// Answers once, before `resolve` returns: complete, without an error, with what a state holds
/// before anything is resolved.
class NullInternetInfoResolver final : public InternetInfoResolver {
 public:
  /// `strings` outlives the resolver.
  explicit NullInternetInfoResolver(const StringTable& strings) : strings_(strings) {}

  void resolve(UpdateHandler updateHandler) override;

 private:
  const StringTable& strings_;
};

}  // namespace lanternfold
