// Reports of the last resolution only.
//
// Made by: the composition, around the internet info resolver. Read by: the monitor.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "NetworkMonitor/Monitor/Resolvers.h"

namespace lanternfold {

/// A resolution that another one has overtaken has had its questions cancelled: what it still
/// reports would look like a machine that nobody answers. The last one always reports to its end.
/// Any thread; the reports come where those of the wrapped resolver come.
class LatestInternetInfoResolver final : public InternetInfoResolver {
 public:
  /// `resolver` may not be null.
  explicit LatestInternetInfoResolver(std::shared_ptr<InternetInfoResolver> resolver);

  void resolve(UpdateHandler updateHandler) override;

 private:
  using Number = std::atomic<std::uint64_t>;

  const std::shared_ptr<InternetInfoResolver> resolver_;
  const std::shared_ptr<Number> last_;  // of the last resolution; outlived by reports
};

}  // namespace lanternfold
