// A resolver of the public information that knows nothing, for tests of everything else.
#pragma once

#include "NetworkMonitor/Monitor/Resolvers.h"

namespace lanternfold {

/// Answers once, before `resolve` returns: complete, without an error, with what a state holds
/// before anything is resolved.
class NullInternetInfoResolver final : public InternetInfoResolver {
 public:
  /// `strings` outlives the resolver.
  explicit NullInternetInfoResolver(const StringTable& strings) : strings_(strings) {}

  void resolve(UpdateHandler updateHandler) override {
    updateHandler(NetworkState::initial(strings_).internet, true, {});
  }

 private:
  const StringTable& strings_;
};

}  // namespace lanternfold
