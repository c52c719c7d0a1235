// Who answers for some of what can be known of a machine from outside.
//
// Implemented in this folder; called by `StandardInternetInfoResolver`, and by
// `CachedPublicInfoResolver` over two others.
#pragma once

#include <expected>
#include <functional>
#include <memory>
#include <system_error>
#include <vector>

#include "NetworkMonitor/PublicInfo/PublicInfoKey.h"

namespace lanternfold {

/// One request at a time; a resolver may be dropped while its request runs.
class PublicInfoResolver {
 public:
  using Keys = std::vector<PublicInfoKey>;
  /// Holds some of the requested keys, or why there are none: an error of the URL domain
  /// (`Platform/UrlError.h`), of decoding (`PublicInfoDecodingError`) or a
  /// `PublicInfoResolverError`.
  using Answer = std::expected<PublicInfo, std::error_code>;
  /// Called exactly once per request, on any thread, maybe before `resolve` returns.
  using Completion = std::move_only_function<void(Answer)>;

  virtual ~PublicInfoResolver() = default;

  /// What resolvers of this class can answer, in order.
  [[nodiscard]] virtual Keys supportedKeys() const = 0;
  virtual void resolve(Keys keys, Completion completion) = 0;
};

struct PublicInfoResolverConfiguration {
  std::shared_ptr<PublicInfoResolver> resolver;
  PublicInfoResolver::Keys keys;  ///< what it is asked for
};

}  // namespace lanternfold
