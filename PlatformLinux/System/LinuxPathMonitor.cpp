#include "PlatformLinux/System/LinuxPathMonitor.h"

#include <utility>

#include "PlatformLinux/System/PathMonitorSession.h"
#include "Support/FatalError.h"

namespace lanternfold {

LinuxPathMonitor::LinuxPathMonitor(EventLoop& loop,
                                   std::optional<PathInterfaceType> requiredInterfaceType,
                                   LinkSurvey survey)
    : loop_(loop),
      requiredInterfaceType_(requiredInterfaceType),
      survey_(std::move(survey)),
      recipient_(std::make_shared<PathUpdateRecipient>()) {}

LinuxPathMonitor::~LinuxPathMonitor() { cancel(); }

void LinuxPathMonitor::setPathUpdateHandler(UpdateHandler handler) {
  if (session_) fatalError("a path monitor was given its update handler after its start");
  recipient_->handler = std::move(handler);
}

void LinuxPathMonitor::start(DispatchQueue& queue) {
  if (session_) fatalError("a path monitor was started twice");
  session_ = std::make_shared<PathMonitorSession>(
      loop_, queue, recipient_, PathMonitorSession::Sources::open(survey_, requiredInterfaceType_));
  if (recipient_->isCancelled) return;
  loop_.post([session = session_] { session->begin(); });
}

void LinuxPathMonitor::cancel() {
  if (recipient_->isCancelled.exchange(true) || !session_) return;
  loop_.post([session = session_] { session->end(); });
}

LinuxPathMonitorFactory::LinuxPathMonitorFactory(EventLoop& loop, LinkSurvey survey)
    : loop_(loop), survey_(std::move(survey)) {}

std::unique_ptr<PathMonitor> LinuxPathMonitorFactory::makePathMonitor(
    std::optional<PathInterfaceType> requiredInterfaceType) {
  return std::make_unique<LinuxPathMonitor>(loop_, requiredInterfaceType, survey_);
}

}  // namespace lanternfold
