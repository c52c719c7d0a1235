#include "PlatformLinux/Location/LinuxLocationConsent.h"

#include <utility>

#include "PlatformLinux/Location/FileWatch.h"

namespace lanternfold {
namespace {

using ChangeHandler = LocationConsent::ChangeHandler;

/// Compares what is recorded with what was, and tells the main queue. It lives on the loop's thread
/// and begins with what the manager's maker saw, so that no change since then is missed.
class ConsentComparison {
 public:
  ConsentComparison(const ConsentRecord& record, DispatchQueue& queue,
                    std::weak_ptr<const ChangeHandler> handler)
      : record_(record), queue_(queue), handler_(std::move(handler)), known_(record.decision()) {}

  void compare() {
    const ConsentDecision now = record_.decision();
    if (std::exchange(known_, now) == now) return;
    queue_.async([handler = handler_] {
      const auto living = handler.lock();
      if (living && *living) (*living)();
    });
  }

 private:
  const ConsentRecord& record_;
  DispatchQueue& queue_;
  std::weak_ptr<const ChangeHandler> handler_;
  ConsentDecision known_;
};

class LinuxLocationManager final : public LocationManager {
 public:
  LinuxLocationManager(const ConsentRecord& record, EventLoop& loop, Dispatch& dispatch,
                       DiagnosticLog& log, LinuxLocationConsent::Ask ask,
                       ChangeHandler didChangeAuthorization)
      : record_(record),
        loop_(loop),
        ask_(std::move(ask)),
        handler_(std::make_shared<const ChangeHandler>(std::move(didChangeAuthorization))) {
    if (record.file().empty()) return;
    auto comparison = std::make_shared<ConsentComparison>(record, dispatch.mainQueue(), handler_);
    watch_ =
        std::make_shared<FileWatch>(loop, record.file(), [comparison] { comparison->compare(); });
    loop_.post([watch = watch_, comparison, &log] {
      if (const auto error = watch->begin()) {
        log.line(
            "changes of the consent to show Wi-Fi names are not noticed until the program "
            "starts again: " +
            error.message() + "; see the limits of open files and of fs.inotify");
      }
      comparison->compare();
    });
  }
  ~LinuxLocationManager() override {
    // Waited for: what the watch uses may go right after the manager.
    if (watch_) loop_.runAndWait([this] { watch_->end(); });
  }
  LinuxLocationManager(const LinuxLocationManager&) = delete;
  LinuxLocationManager& operator=(const LinuxLocationManager&) = delete;

  void requestWhenInUseAuthorization() override { request(/*whenInUse=*/true); }
  void requestAlwaysAuthorization() override { request(/*whenInUse=*/false); }

 private:
  void request(bool whenInUse) {
    if (ask_ && record_.decision() == ConsentDecision::notDetermined) ask_(whenInUse);
  }

  const ConsentRecord& record_;
  EventLoop& loop_;
  const LinuxLocationConsent::Ask ask_;
  const std::shared_ptr<const ChangeHandler> handler_;
  std::shared_ptr<FileWatch> watch_;
};

}  // namespace

LinuxLocationConsent::LinuxLocationConsent(const ConsentRecord& record, EventLoop& loop,
                                           Dispatch& dispatch, DiagnosticLog& log, Ask ask)
    : record_(record), loop_(loop), dispatch_(dispatch), log_(log), ask_(std::move(ask)) {}

std::int32_t LinuxLocationConsent::authorizationStatus() const {
  return static_cast<std::int32_t>(record_.decision());
}

std::unique_ptr<LocationManager> LinuxLocationConsent::makeLocationManager(
    ChangeHandler didChangeAuthorization) {
  return std::make_unique<LinuxLocationManager>(record_, loop_, dispatch_, log_, ask_,
                                                std::move(didChangeAuthorization));
}

}  // namespace lanternfold
