#include "NetworkMonitor/PublicInfo/RestApiPublicInfoResolve.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "NetworkMonitor/PublicInfo/PublicInfoResolverError.h"
#include "Support/FatalError.h"

namespace lanternfold {

UrlSessionConfiguration publicInfoSessionConfiguration(const BundleInformation& bundle) {
  using std::chrono::seconds;
  if (bundle.isWidgetExtension()) {
    return {.timeoutForRequest = seconds(3), .timeoutForResource = seconds(4)};
  }
  return {.timeoutForRequest = seconds(5), .timeoutForResource = seconds(10)};
}

PublicInfo restrictedTo(const PublicInfoResolver::Keys& keys, PublicInfo answer) {
  std::erase_if(answer, [&keys](const auto& entry) {
    return std::ranges::find(keys, entry.first) == keys.end();
  });
  return answer;
}

RestApiPublicInfoResolve::RestApiPublicInfoResolve(UrlSessions& sessions,
                                                   const BundleInformation& bundle)
    : sessions_(sessions), configuration_(publicInfoSessionConfiguration(bundle)) {}

PublicInfoResolver::Keys RestApiPublicInfoResolve::supportedKeys() const {
  fatalError("the base of the web resolvers was asked for its keys");
}

std::string RestApiPublicInfoResolve::apiUrl() const {
  fatalError("the base of the web resolvers was asked for its URL");
}

PublicInfoResolver::Answer RestApiPublicInfoResolve::parseResponse(std::string_view) const {
  fatalError("the base of the web resolvers was asked to parse an answer");
}

void RestApiPublicInfoResolve::resolve(Keys keys, Completion completion) {
  const Number number = begin();
  const auto task = makeTask(number, std::move(keys), std::move(completion));
  if (keep(number, task)) {
    task->resume();
  } else {
    task->cancel();
  }
}

std::shared_ptr<UrlSessionDataTask> RestApiPublicInfoResolve::dataTask() const {
  const std::lock_guard lock(mutex_);
  return dataTask_;
}

PublicInfoResolver::Answer RestApiPublicInfoResolve::answerOf(const UrlAnswer& answer,
                                                              const Keys& keys) const {
  if (answer.data) {
    auto parsed = parseResponse(*answer.data);
    return parsed ? Answer(restrictedTo(keys, *std::move(parsed))) : parsed;
  }
  if (answer.error) return std::unexpected(answer.error);
  return std::unexpected(make_error_code(PublicInfoResolverError::generic));
}

RestApiPublicInfoResolve::Number RestApiPublicInfoResolve::begin() {
  Number number = 0;
  std::shared_ptr<UrlSessionDataTask> earlier;
  {
    const std::lock_guard lock(mutex_);
    number = ++lastRequest_;
    earlier = std::exchange(dataTask_, nullptr);
  }
  if (earlier) earlier->cancel();
  return number;
}

std::shared_ptr<UrlSessionDataTask> RestApiPublicInfoResolve::makeTask(Number number, Keys keys,
                                                                       Completion completion) {
  UrlRequest request{.url = apiUrl(), .addressFamily = addressFamily()};
  const auto session = sessions_.makeSession(configuration_);
  return session->dataTask(std::move(request),
                           [self = shared_from_this(), number, keys = std::move(keys),
                            completion = std::move(completion)](const UrlAnswer& answer) mutable {
                             self->finish(number);
                             completion(self->answerOf(answer, keys));
                           });
}

/// Whether no other request has begun meanwhile.
bool RestApiPublicInfoResolve::keep(Number number,
                                    const std::shared_ptr<UrlSessionDataTask>& task) {
  const std::lock_guard lock(mutex_);
  if (number != lastRequest_) return false;
  dataTask_ = task;
  return true;
}

void RestApiPublicInfoResolve::finish(Number number) {
  std::shared_ptr<UrlSessionDataTask> finished;  // released without the lock
  const std::lock_guard lock(mutex_);
  if (number == lastRequest_) finished = std::exchange(dataTask_, nullptr);
}

}  // namespace lanternfold
