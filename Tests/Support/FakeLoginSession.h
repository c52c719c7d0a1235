// A login session that tests lock, unlock and wake.
#pragma once

#include <memory>
#include <utility>

#include "Platform/Dispatch.h"
#include "Platform/LoginSession.h"

namespace lanternfold {

class FakeLoginSession final : public LoginSession {
 public:
  explicit FakeLoginSession(DispatchQueue& mainQueue) : mainQueue_(mainQueue) {}

  void start(Handlers handlers) override {
    *handlers_ = std::move(handlers);
    isStarted_ = true;
    if (isLocked_) tellLock();
  }

  void setLocked(bool isLocked) {
    if (std::exchange(isLocked_, isLocked) != isLocked && isStarted_) tellLock();
  }
  void wake() {
    if (!isStarted_) return;
    mainQueue_.async([weak = std::weak_ptr(handlers_)] {
      const auto handlers = weak.lock();
      if (handlers && handlers->resumed) handlers->resumed();
    });
  }

 private:
  void tellLock() {
    mainQueue_.async([weak = std::weak_ptr(handlers_), isLocked = isLocked_] {
      const auto handlers = weak.lock();
      if (handlers && handlers->lockChanged) handlers->lockChanged(isLocked);
    });
  }

  DispatchQueue& mainQueue_;
  /// Held weakly by what waits on the queue, so that nothing is told after the destruction.
  const std::shared_ptr<Handlers> handlers_ = std::make_shared<Handlers>();
  bool isStarted_ = false;
  bool isLocked_ = false;
};

}  // namespace lanternfold
