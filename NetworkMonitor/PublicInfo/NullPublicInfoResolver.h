// A public-info resolver that knows nothing.
//
// Made by: compositions that ask nobody.
#pragma once

#include "NetworkMonitor/PublicInfo/PublicInfoResolver.h"

namespace lanternfold {

/// Completes before `resolve` returns, with an empty answer.
class NullPublicInfoResolver final : public PublicInfoResolver {
 public:
  [[nodiscard]] Keys supportedKeys() const override { return {}; }
  void resolve(Keys, Completion completion) override { completion(PublicInfo{}); }
};

}  // namespace lanternfold
