#include "PlatformLinux/Url/CurlUrlSessions.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "PlatformLinux/Url/CurlUrlTask.h"

namespace lanternfold {
namespace {

/// A time limit that a clock and libcurl can reckon with.
std::chrono::milliseconds bounded(std::chrono::milliseconds limit) {
  return std::clamp<std::chrono::milliseconds>(limit, std::chrono::milliseconds(1),
                                               std::chrono::hours(24));
}

class CurlUrlSession final : public UrlSession {
 public:
  CurlUrlSession(std::shared_ptr<CurlUrlTasks> tasks, const UrlSessionConfiguration& configuration)
      : tasks_(std::move(tasks)), configuration_(configuration) {}

  [[nodiscard]] std::shared_ptr<UrlSessionDataTask> dataTask(UrlRequest request,
                                                             Completion completion) override {
    const CurlExchange::Limits limits{
        .silence = bounded(std::min(request.timeout, configuration_.timeoutForRequest)),
        .whole = bounded(configuration_.timeoutForResource)};
    return std::make_shared<CurlUrlTask>(tasks_, std::move(request), limits, std::move(completion));
  }

 private:
  const std::shared_ptr<CurlUrlTasks> tasks_;
  const UrlSessionConfiguration configuration_;
};

}  // namespace

CurlUrlSessions::CurlUrlSessions(EventLoop& loop, Dispatch& dispatch, CurlUrlSettings settings)
    : tasks_(std::make_shared<CurlUrlTasks>(loop, dispatch.globalQueue(QualityOfService::utility),
                                            std::move(settings))) {}

CurlUrlSessions::~CurlUrlSessions() { tasks_->close(); }

std::unique_ptr<UrlSession> CurlUrlSessions::makeSession(
    const UrlSessionConfiguration& configuration) {
  return std::make_unique<CurlUrlSession>(tasks_, configuration);
}

}  // namespace lanternfold
