#include "NetBase/NetworkMessageSender.h"

#include <chrono>
#include <cmath>
#include <functional>
#include <mutex>
#include <utility>

#include <asio/associated_executor.hpp>
#include <asio/async_result.hpp>
#include <asio/execution/outstanding_work.hpp>
#include <asio/post.hpp>
#include <asio/prefer.hpp>
#include <asio/use_awaitable.hpp>

#include "Platform/Timer.h"

namespace lanternfold {
namespace {

using Completion = std::move_only_function<void(MessageResult)>;

/// Longer ones never pass.
std::chrono::nanoseconds boundedSeconds(double seconds) {
  using std::chrono::nanoseconds;
  constexpr double longest = 9e9;  // what nanoseconds can count
  if (!(seconds > 0)) return nanoseconds::zero();
  if (seconds >= longest) return nanoseconds::max();
  return std::chrono::duration_cast<nanoseconds>(std::chrono::duration<double>(seconds));
}

/// Suspends the calling coroutine until `begin` has had its completion called, on whatever thread.
asio::awaitable<MessageResult> outcomeOf(std::move_only_function<void(Completion)> begin) {
  auto initiation = [](auto handler, std::move_only_function<void(Completion)> work) {
    // The caller's executor has something to wait for meanwhile.
    auto executor = asio::prefer(asio::get_associated_executor(handler),
                                 asio::execution::outstanding_work.tracked);
    work([executor = std::move(executor),
          handler = std::move(handler)](MessageResult result) mutable {
      asio::post(executor, [handler = std::move(handler), result = std::move(result)]() mutable {
        std::move(handler)(std::move(result));
      });
    });
  };
  return asio::async_initiate<const asio::use_awaitable_t<>&, void(MessageResult)>(
      std::move(initiation), asio::use_awaitable, std::move(begin));
}

}  // namespace

/// The sender's fields, which live for as long as the connection's handlers may be called.
class NetworkMessageSender::Exchange : public std::enable_shared_from_this<Exchange> {
 public:
  Exchange(std::string message, std::shared_ptr<Connection> used, std::optional<double> limit,
           DispatchQueue& connectionQueue, DispatchQueue& timerQueue)
      : data(std::move(message)),
        timeout(limit),
        dispatchQueue_(connectionQueue),
        mainQueue_(timerQueue),
        connection_(std::move(used)) {}

  const std::string data;
  const std::optional<double> timeout;

  [[nodiscard]] bool isComplete() const {
    const std::lock_guard lock(mutex_);
    return hasReply_;
  }

  void start(Completion completion) {
    if (const std::error_code fault = begin(completion)) {
      completion(std::unexpected(fault));
      return;
    }
    const std::shared_ptr<Connection> used = connectionInUse();
    used->setStateHandler(
        [self = shared_from_this()](ConnectionState state, std::error_code error) {
          self->stateChanged(state, error);
        });
    used->receiveMessage(
        [self = shared_from_this()](auto message) { self->received(std::move(message)); });
    used->start(dispatchQueue_);
  }

  void cancel() {
    std::shared_ptr<Connection> used;
    {
      const std::lock_guard lock(mutex_);
      isCancelled_ = true;
      timer_.reset();
      used = connection_;
    }
    if (used) used->cancel();
  }

 private:
  /// Takes `completion` when this is the exchange's only start.
  std::error_code begin(Completion& completion) {
    const std::lock_guard lock(mutex_);
    if (isCancelled_) return MessageSenderError::cancelled;
    if (isStarted_ || connection_->state() != ConnectionState::setup) {
      return MessageSenderError::genericFailure;
    }
    isStarted_ = true;
    completion_ = std::move(completion);
    if (timeout) {
      timer_.emplace(mainQueue_, boundedSeconds(*timeout), [weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->timeLimitReached();
      });
    }
    return {};
  }

  // On the main queue.

  void timeLimitReached() {
    std::shared_ptr<Connection> used;
    {
      const std::lock_guard lock(mutex_);
      if (isCancelled_) return;
      isTimeoutReached_ = true;
      used = connection_;
    }
    if (used) used->cancel();
  }

  // On the connection's queue.

  void stateChanged(ConnectionState state, std::error_code error) {
    switch (state) {
      case ConnectionState::ready:
        if (const auto used = connectionInUse()) used->send(data);
        break;
      case ConnectionState::failed:
        end(std::unexpected(error));
        break;
      case ConnectionState::cancelled:
        end(std::unexpected(reasonOfCancellation()));
        break;
      case ConnectionState::setup:
      case ConnectionState::preparing:
        break;
    }
  }

  void received(std::expected<std::optional<std::string>, std::error_code> message) {
    if (!message) {
      end(std::unexpected(message.error()));
    } else if (!*message) {
      end(std::unexpected(make_error_code(MessageSenderError::noData)));
    } else {
      const auto used = connectionInUse();
      end(MessageReply{**std::move(message), used ? used->remoteEndpoint() : std::nullopt});
    }
  }

  [[nodiscard]] std::shared_ptr<Connection> connectionInUse() const {
    const std::lock_guard lock(mutex_);
    return connection_;
  }

  [[nodiscard]] std::error_code reasonOfCancellation() const {
    const std::lock_guard lock(mutex_);
    if (isTimeoutReached_) return MessageSenderError::timeout;
    return isCancelled_ ? MessageSenderError::cancelled : MessageSenderError::genericFailure;
  }

  /// The first outcome counts.
  void end(MessageResult result) {
    Completion completion;
    std::shared_ptr<Connection> used;
    {
      const std::lock_guard lock(mutex_);
      completion = std::exchange(completion_, nullptr);
      if (!completion) return;
      hasReply_ = result.has_value();
      timer_.reset();
      // Its handlers hold this exchange: whoever is left with them must not hold it in turn.
      used = std::exchange(connection_, nullptr);
    }
    used->cancel();
    completion(std::move(result));
  }

  DispatchQueue& dispatchQueue_;
  DispatchQueue& mainQueue_;

  mutable std::mutex mutex_;  // guards the rest; under it nobody is called who could call back
  std::shared_ptr<Connection> connection_;  // null after the end
  std::optional<Timer> timer_;
  bool hasReply_ = false;
  bool isTimeoutReached_ = false;
  bool isCancelled_ = false;
  bool isStarted_ = false;
  Completion completion_;  // until the end
};

NetworkMessageSender::NetworkMessageSender(std::string data, std::shared_ptr<Connection> connection,
                                           std::optional<double> timeout,
                                           DispatchQueue& dispatchQueue, DispatchQueue& mainQueue)
    : exchange_(std::make_shared<Exchange>(std::move(data), std::move(connection), timeout,
                                           dispatchQueue, mainQueue)) {}

const std::string& NetworkMessageSender::data() const { return exchange_->data; }

std::optional<double> NetworkMessageSender::timeout() const { return exchange_->timeout; }

bool NetworkMessageSender::isComplete() const { return exchange_->isComplete(); }

// Neither is a coroutine of this object, which may be gone when the caller awaits it.

asio::awaitable<MessageResult> NetworkMessageSender::start() {
  return outcomeOf(
      [exchange = exchange_](Completion completion) { exchange->start(std::move(completion)); });
}

asio::awaitable<void> NetworkMessageSender::cancel() {
  return [](std::shared_ptr<Exchange> exchange) -> asio::awaitable<void> {
    exchange->cancel();
    co_return;
  }(exchange_);
}

}  // namespace lanternfold
