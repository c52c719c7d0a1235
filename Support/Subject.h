// Publish and subscribe, without a stored value: a subscriber gets the later events only.
//
// Made by: whoever has events to tell, as a member `Subject`. Read by: clients, which see it as a
// `Publisher`.
#pragma once

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "Support/Subscription.h"

namespace lanternfold {

/// What clients see. Any thread.
template <typename Event>
class Publisher {
 public:
  using Handler = std::function<void(const Event&)>;

  /// Calls `handler` with every event that is sent after the return, on the sender's thread, until
  /// the subscription is cancelled. Handlers are called in the order of their subscriptions.
  ///
  /// A handler may subscribe, cancel and send. One that subscribes during an event gets the next
  /// one first; one that is cancelled during an event, by itself or by another, and has not been
  /// called yet, is not called. An event that is sent by a handler is delivered to all before the
  /// first one goes on.
  Subscription subscribe(Handler handler) {
    auto subscriber = std::make_shared<Subscriber>(std::move(handler));
    {
      const std::lock_guard lock(list_->mutex);
      list_->subscribers.push_back(subscriber);
    }
    return Subscription([list = std::weak_ptr(list_), subscriber = std::move(subscriber)] {
      subscriber->cancelled = true;
      if (const auto present = list.lock()) present->remove(subscriber);
    });
  }

 protected:
  Publisher() = default;
  ~Publisher() = default;
  Publisher(const Publisher&) = delete;
  Publisher& operator=(const Publisher&) = delete;

  void deliver(const Event& event) {
    for (const auto& subscriber : list_->copy()) {
      if (!subscriber->cancelled) subscriber->handler(event);
    }
  }

 private:
  struct Subscriber {
    explicit Subscriber(Handler called) : handler(std::move(called)) {}

    const Handler handler;
    std::atomic<bool> cancelled = false;
  };
  using Subscribers = std::vector<std::shared_ptr<Subscriber>>;

  struct List {
    [[nodiscard]] Subscribers copy() {
      const std::lock_guard lock(mutex);
      return subscribers;
    }
    void remove(const std::shared_ptr<Subscriber>& subscriber) {
      const std::lock_guard lock(mutex);
      std::erase(subscribers, subscriber);
    }

    std::mutex mutex;
    Subscribers subscribers;  // guarded by mutex
  };

  const std::shared_ptr<List> list_ = std::make_shared<List>();
};

/// The sender's side. Any thread; events that several threads send at the same time may reach
/// subscribers in different orders.
template <typename Event>
class Subject final : public Publisher<Event> {
 public:
  /// Returns when every handler has been called.
  void send(const Event& event) { this->deliver(event); }
};

}  // namespace lanternfold
