#include "NetworkMonitor/PublicInfo/StandardInternetInfoResolver.h"

#include <algorithm>
#include <utility>

#include "NetworkMonitor/PublicInfo/InternetInfoMerge.h"
#include "Support/FatalError.h"

namespace lanternfold {
namespace {

/// One resolution, shared by the answers that are still out. Belongs to the main queue from the
/// first one on.
class Resolution : public std::enable_shared_from_this<Resolution> {
 public:
  Resolution(InternetInfo info, std::size_t answers, InternetInfoResolver::UpdateHandler handler,
             DispatchQueue& mainQueue)
      : info_(std::move(info)),
        outstanding_(answers),
        handler_(std::move(handler)),
        mainQueue_(mainQueue) {}

  /// For one of the answers.
  [[nodiscard]] PublicInfoResolver::Completion completion() {
    return
        [self = shared_from_this(), isAnswered = false](PublicInfoResolver::Answer answer) mutable {
          if (std::exchange(isAnswered, true)) fatalError("a public-info resolver completed twice");
          self->mainQueue_.async([self, answer = std::move(answer)] { self->receive(answer); });
        };
  }

  void completeWhenAllAnswered() {
    if (outstanding_ != 0) return;
    mainQueue_.async([self = shared_from_this()] { self->handler_(self->info_, true, {}); });
  }

 private:
  void receive(const PublicInfoResolver::Answer& answer) {
    if (answer) merge(*answer, info_);
    handler_(info_, false, answer ? std::error_code() : answer.error());
    --outstanding_;
    completeWhenAllAnswered();
  }

  InternetInfo info_;
  std::size_t outstanding_;
  const InternetInfoResolver::UpdateHandler handler_;
  DispatchQueue& mainQueue_;
};

}  // namespace

StandardInternetInfoResolver::StandardInternetInfoResolver(
    std::vector<PublicInfoResolverConfiguration> resolvers,
    std::shared_ptr<ConnectionMetricsReader> metricsReader, const Environment& environment)
    : resolvers_(std::move(resolvers)),
      metricsReader_(std::move(metricsReader)),
      environment_(environment) {
  const bool isComplete = std::ranges::all_of(
      resolvers_, [](const auto& configuration) { return configuration.resolver != nullptr; });
  if (!metricsReader_ || !isComplete) {
    fatalError("an internet info resolver was made without a counter reader or a resolver");
  }
}

void StandardInternetInfoResolver::resolve(UpdateHandler updateHandler) {
  const auto resolution = std::make_shared<Resolution>(
      initialInfo(), resolvers_.size(), std::move(updateHandler), environment_.mainQueue);
  resolution->completeWhenAllAnswered();
  for (const auto& [resolver, keys] : resolvers_) resolver->resolve(keys, resolution->completion());
}

InternetInfo StandardInternetInfoResolver::initialInfo() const {
  InternetInfo info;
  info.active = true;
  info.displayName = "Internet";  // the one name that no translation changes
  info.dns = environment_.netUtils.defaultDnsServers();
  info.metrics = internetMetrics();
  return info;
}

ConnectionMetrics StandardInternetInfoResolver::internetMetrics() const {
  const auto counters = metricsReader_->read();
  if (!counters) return ConnectionMetrics::empty();
  const auto isAdapter = environment_.naming.matcher("en");
  const auto isCellular = environment_.naming.matcher("pdp_ip");
  ConnectionMetrics sum;
  for (std::size_t position = 0; position < counters->size(); ++position) {
    const std::string& name = counters->name(position);
    if (isAdapter(name) || isCellular(name)) sum += counters->value(position);
  }
  // Of links of several sizes there is no one MTU.
  sum.mtu = 0;
  return sum;
}

}  // namespace lanternfold
