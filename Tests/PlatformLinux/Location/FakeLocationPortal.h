// A portal in memory, with a user who answers when the test says so.
#pragma once

#include <cstddef>
#include <mutex>
#include <utility>
#include <vector>

#include "PlatformLinux/Location/LocationPortal.h"

namespace lanternfold {

/// What the test and its portals share. Any thread.
class FakePortalState {
 public:
  /// The portal has learned this, and says so if it is news.
  void setKnowledge(PortalKnowledge knowledge) {
    LocationPortal::ChangeHandler changed;
    {
      const std::lock_guard lock(mutex_);
      if (std::exchange(knowledge_, knowledge) == knowledge) return;
      changed = changed_;
    }
    if (changed) changed();
  }
  [[nodiscard]] PortalKnowledge knowledge() {
    const std::lock_guard lock(mutex_);
    ++looks_;
    return knowledge_;
  }
  [[nodiscard]] std::size_t looks() {
    const std::lock_guard lock(mutex_);
    return looks_;
  }

  void ask(LocationPortal::AnswerHandler handler) {
    const std::lock_guard lock(mutex_);
    ++questions_;
    open_.push_back(std::move(handler));
  }
  /// Ever asked.
  [[nodiscard]] std::size_t questions() {
    const std::lock_guard lock(mutex_);
    return questions_;
  }
  /// Answers every question that is open.
  void answer(PortalOutcome outcome) {
    std::vector<LocationPortal::AnswerHandler> open;
    {
      const std::lock_guard lock(mutex_);
      open = std::exchange(open_, {});
    }
    for (const auto& handler : open) handler(outcome);
  }

  void setChangeHandler(LocationPortal::ChangeHandler handler) {
    const std::lock_guard lock(mutex_);
    changed_ = std::move(handler);
    open_.clear();
  }

 private:
  std::mutex mutex_;
  // Guarded by mutex_:
  PortalKnowledge knowledge_{.portal = PortalOutcome::offered,
                             .stored = StoredPermission::unobservable};
  LocationPortal::ChangeHandler changed_;
  std::vector<LocationPortal::AnswerHandler> open_;
  std::size_t questions_ = 0;
  std::size_t looks_ = 0;
};

/// `state` outlives the portal.
class FakeLocationPortal final : public LocationPortal {
 public:
  explicit FakeLocationPortal(FakePortalState& state) : state_(state) {}
  ~FakeLocationPortal() override { state_.setChangeHandler(nullptr); }
  FakeLocationPortal(const FakeLocationPortal&) = delete;
  FakeLocationPortal& operator=(const FakeLocationPortal&) = delete;

  void setChangeHandler(ChangeHandler handler) override {
    state_.setChangeHandler(std::move(handler));
  }
  [[nodiscard]] PortalKnowledge knowledge() override { return state_.knowledge(); }
  void ask(AnswerHandler handler) override { state_.ask(std::move(handler)); }

 private:
  FakePortalState& state_;
};

}  // namespace lanternfold
