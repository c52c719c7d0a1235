#include "PlatformLinux/Location/BusLocationPortal.h"

#include <utility>

#include "PlatformLinux/Location/PortalConversations.h"

namespace lanternfold {

BusLocationPortal::BusLocationPortal(EventLoop& loop, PortalSurroundings surroundings)
    : loop_(loop),
      lookLimit_(surroundings.limits.reply),
      conversations_(std::make_shared<PortalConversations>(
          loop, std::move(surroundings),
          [this](const PortalKnowledge& knowledge) { learn(knowledge); })) {}

BusLocationPortal::~BusLocationPortal() {
  loop_.runAndWait([this] { conversations_->end(); });
}

void BusLocationPortal::setChangeHandler(ChangeHandler handler) { changed_ = std::move(handler); }

PortalKnowledge BusLocationPortal::knowledge() {
  std::unique_lock lock(mutex_);
  if (!std::exchange(hasBegun_, true)) {
    lookDeadline_ = std::chrono::steady_clock::now() + lookLimit_;
    loop_.post([conversations = conversations_] { conversations->begin(); });
  }
  if (!loop_.isCurrent()) {
    (void)learned_.wait_until(lock, lookDeadline_, [this] { return hasLooked_; });
  }
  return knowledge_;
}

void BusLocationPortal::ask(AnswerHandler handler) {
  loop_.post([conversations = conversations_, handler = std::move(handler)]() mutable {
    conversations->ask(std::move(handler));
  });
}

void BusLocationPortal::learn(const PortalKnowledge& knowledge) {
  {
    const std::lock_guard lock(mutex_);
    hasLooked_ = true;
    if (std::exchange(knowledge_, knowledge) == knowledge) return learned_.notify_all();
  }
  learned_.notify_all();
  if (changed_) changed_();
}

}  // namespace lanternfold
