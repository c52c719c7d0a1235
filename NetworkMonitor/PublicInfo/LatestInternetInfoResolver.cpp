#include "NetworkMonitor/PublicInfo/LatestInternetInfoResolver.h"

#include <utility>

#include "Support/FatalError.h"

namespace lanternfold {

LatestInternetInfoResolver::LatestInternetInfoResolver(
    std::shared_ptr<InternetInfoResolver> resolver)
    : resolver_(std::move(resolver)), last_(std::make_shared<Number>(0)) {
  if (!resolver_) fatalError("a resolver of the last resolution was made around none");
}

void LatestInternetInfoResolver::resolve(UpdateHandler updateHandler) {
  const std::uint64_t number = ++*last_;
  resolver_->resolve([last = last_, number, handler = std::move(updateHandler)](
                         const InternetInfo& info, bool complete, std::error_code error) {
    if (number == *last) handler(info, complete, error);
  });
}

}  // namespace lanternfold
