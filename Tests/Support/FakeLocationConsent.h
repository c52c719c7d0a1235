// The user's consent in memory, a user who decides when the test says so, and what was asked.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "Platform/Dispatch.h"
#include "Platform/LocationManager.h"

namespace lanternfold {

/// Any thread; managers are destroyed on the main queue or while it does not run. Outlives its
/// managers.
class FakeLocationConsent final : public LocationConsent {
 public:
  enum class Request { whenInUse, always };

  /// Changes are told on `mainQueue`, which outlives the consent. Nothing is decided at first,
  /// unless `status` says otherwise.
  explicit FakeLocationConsent(DispatchQueue& mainQueue, std::int32_t status = 0)
      : mainQueue_(mainQueue), status_(status) {}

  /// The user decides, here or in another program: every manager hears of it, unless it is what
  /// had been decided before. Any value, as the system may give one.
  void setAuthorizationStatus(std::int32_t status) {
    const std::lock_guard lock(mutex_);
    if (std::exchange(status_, status) == status) return;
    for (const auto& listener : listeners_) post(listener);
  }

  [[nodiscard]] std::int32_t authorizationStatus() const override {
    const std::lock_guard lock(mutex_);
    return status_;
  }

  [[nodiscard]] std::unique_ptr<LocationManager> makeLocationManager(
      ChangeHandler didChangeAuthorization) override {
    auto listener = std::make_shared<Listener>();
    listener->handler = std::move(didChangeAuthorization);
    const std::lock_guard lock(mutex_);
    ++managersMade_;
    listeners_.push_back(listener);
    return std::make_unique<Manager>(*this, std::move(listener));
  }

  /// Managers ever made.
  [[nodiscard]] std::size_t managersMade() const {
    const std::lock_guard lock(mutex_);
    return managersMade_;
  }
  /// Managers that still exist.
  [[nodiscard]] std::size_t managers() const {
    const std::lock_guard lock(mutex_);
    return listeners_.size();
  }
  /// Every request of a manager, in order.
  [[nodiscard]] std::vector<Request> requests() const {
    const std::lock_guard lock(mutex_);
    return requests_;
  }
  /// Those of them that the user was asked, because nothing had been decided yet.
  [[nodiscard]] std::vector<Request> questions() const {
    const std::lock_guard lock(mutex_);
    return questions_;
  }

 private:
  struct Listener {
    std::mutex mutex;
    ChangeHandler handler;  // guarded by mutex; empty when the manager is gone
  };

  class Manager final : public LocationManager {
   public:
    Manager(FakeLocationConsent& consent, std::shared_ptr<Listener> listener)
        : consent_(consent), listener_(std::move(listener)) {}
    ~Manager() override { consent_.forget(listener_); }
    Manager(const Manager&) = delete;
    Manager& operator=(const Manager&) = delete;

    void requestWhenInUseAuthorization() override { consent_.request(Request::whenInUse); }
    void requestAlwaysAuthorization() override { consent_.request(Request::always); }

   private:
    FakeLocationConsent& consent_;
    const std::shared_ptr<Listener> listener_;
  };

  void post(const std::shared_ptr<Listener>& listener) {
    mainQueue_.async([listener] {
      // A copy, because the handler may destroy the manager.
      const ChangeHandler handler = handlerOf(*listener);
      if (handler) handler();
    });
  }
  [[nodiscard]] static ChangeHandler handlerOf(Listener& listener) {
    const std::lock_guard lock(listener.mutex);
    return listener.handler;
  }

  void forget(const std::shared_ptr<Listener>& listener) {
    {
      const std::lock_guard lock(listener->mutex);
      listener->handler = nullptr;
    }
    const std::lock_guard lock(mutex_);
    std::erase(listeners_, listener);
  }

  void request(Request request) {
    const std::lock_guard lock(mutex_);
    requests_.push_back(request);
    if (status_ == 0) questions_.push_back(request);
  }

  DispatchQueue& mainQueue_;
  mutable std::mutex mutex_;
  // Guarded by mutex_:
  std::int32_t status_;
  std::vector<std::shared_ptr<Listener>> listeners_;  // of the managers that exist
  std::size_t managersMade_ = 0;
  std::vector<Request> requests_;
  std::vector<Request> questions_;
};

}  // namespace lanternfold
