#include "PlatformLinux/Location/BusLocationPortal.h"

#include <utility>

#include "PlatformLinux/Location/PortalConversations.h"

namespace lanternfold {

struct BusLocationPortal::Conversing {
  Conversing(PortalSurroundings surroundings, PortalConversations::LearnHandler learned)
      : conversations(thread, std::move(surroundings), std::move(learned)) {}

  BusThread thread;
  PortalConversations conversations;
};

BusLocationPortal::BusLocationPortal(PortalSurroundings surroundings)
    : lookLimit_(surroundings.limits.look),
      conversing_(std::make_unique<Conversing>(
          std::move(surroundings),
          [this](const PortalKnowledge& knowledge) { learn(knowledge); })) {}

BusLocationPortal::~BusLocationPortal() {
  conversing_->thread.runAndWait([this] { conversing_->conversations.end(); });
}

void BusLocationPortal::setChangeHandler(ChangeHandler handler) { changed_ = std::move(handler); }

PortalKnowledge BusLocationPortal::knowledge() {
  std::unique_lock lock(mutex_);
  if (!std::exchange(hasBegun_, true)) {
    lookDeadline_ = std::chrono::steady_clock::now() + lookLimit_;
    conversing_->thread.post([this] { conversing_->conversations.begin(); });
  }
  if (!conversing_->thread.isCurrent()) {
    (void)learned_.wait_until(lock, lookDeadline_, [this] { return hasLooked_; });
  }
  return knowledge_;
}

void BusLocationPortal::ask(AnswerHandler handler) {
  conversing_->thread.post([this, handler = std::move(handler)]() mutable {
    conversing_->conversations.ask(std::move(handler));
  });
}

void BusLocationPortal::learn(const PortalKnowledge& knowledge) {
  bool isNews = false;
  {
    const std::lock_guard lock(mutex_);
    hasLooked_ = true;
    isNews = std::exchange(knowledge_, knowledge) != knowledge;
  }
  learned_.notify_all();
  if (isNews && changed_) changed_();
}

}  // namespace lanternfold
