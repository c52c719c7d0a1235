#include "PlatformLinux/Location/ConsentWatch.h"

#include <utility>

namespace lanternfold {

StatusComparison::StatusComparison(Status status, DispatchQueue& queue,
                                   std::weak_ptr<const ChangeHandler> handler)
    : status_(std::move(status)), queue_(queue), handler_(std::move(handler)), known_(status_()) {}

void StatusComparison::compare() {
  const std::lock_guard lock(mutex_);
  const std::int32_t now = status_();
  if (std::exchange(known_, now) == now) return;
  queue_.async([handler = handler_] {
    const auto living = handler.lock();
    if (living && *living) (*living)();
  });
}

ConsentWatch::ConsentWatch(const ConsentSurroundings& surroundings, StatusComparison::Status status,
                           LocationConsent::ChangeHandler handler)
    : loop_(surroundings.loop),
      handler_(std::make_shared<const LocationConsent::ChangeHandler>(std::move(handler))),
      comparison_(std::make_shared<StatusComparison>(std::move(status),
                                                     surroundings.dispatch.mainQueue(), handler_)) {
  if (surroundings.record.file().empty()) return;
  watch_ = std::make_shared<FileWatch>(loop_, surroundings.record.file(),
                                       [comparison = comparison_] { comparison->compare(); });
  loop_.post([watch = watch_, comparison = comparison_, &log = surroundings.log] {
    if (const auto error = watch->begin()) {
      log.line(
          "changes of the consent to show Wi-Fi names are not noticed until the program "
          "starts again: " +
          error.message() + "; see the limits of open files and of fs.inotify");
    }
    comparison->compare();
  });
}

ConsentWatch::~ConsentWatch() {
  // Waited for: what the watch uses may go right after the manager.
  if (watch_) loop_.runAndWait([this] { watch_->end(); });
}

}  // namespace lanternfold
