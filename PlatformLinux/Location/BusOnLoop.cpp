#include "PlatformLinux/Location/BusOnLoop.h"

#include <chrono>
#include <fcntl.h>
#include <limits>
#include <poll.h>
#include <utility>

#include <asio/io_context.hpp>
#include <asio/posix/stream_descriptor.hpp>
#include <asio/steady_timer.hpp>

namespace lanternfold {

/// The descriptor is a second one of the same socket, because the library closes its own.
struct BusOnLoop::Waits {
  Waits(asio::io_context& context, int descriptor) : socket(context, descriptor), timer(context) {}
  asio::posix::stream_descriptor socket;
  asio::steady_timer timer;
};

BusOnLoop::BusOnLoop(EventLoop& loop, std::unique_ptr<sdbus::IConnection> connection,
                     LostHandler lost)
    : loop_(loop), connection_(std::move(connection)), lost_(std::move(lost)) {
  const int descriptor = ::fcntl(connection_->getEventLoopPollData().fd, F_DUPFD_CLOEXEC, 0);
  if (descriptor >= 0) waits_ = std::make_unique<Waits>(loop.context(), descriptor);
}

BusOnLoop::~BusOnLoop() = default;

void BusOnLoop::close() {
  waits_.reset();
  lost_ = nullptr;
}

void BusOnLoop::lose() {
  const LostHandler lost = std::exchange(lost_, nullptr);
  close();
  if (lost) lost();
}

void BusOnLoop::pump() {
  if (isPumping_) return;
  // Whatever a handler lets go of, the connection is there until the library has returned.
  const auto living = shared_from_this();
  isPumping_ = true;
  const bool isThere = waits_ && takeMessages();
  isPumping_ = false;
  if (!isThere) {
    lose();
  } else if (waits_) {
    wait();
  }
}

/// Whether the bus is there. What is left after a while is taken next time: others wait for the
/// loop too.
bool BusOnLoop::takeMessages() {
  constexpr int mostMessagesAtOnce = 64;
  try {
    for (int count = 0; count < mostMessagesAtOnce && waits_; ++count) {
      if (!connection_->processPendingRequest()) break;
    }
    return true;
  } catch (const sdbus::Error&) {
    return false;
  }
}

void BusOnLoop::wait() {
  sdbus::IConnection::PollData data{};
  try {
    data = connection_->getEventLoopPollData();
  } catch (const sdbus::Error&) {
    lose();
    return;
  }
  const auto goOn = [weak = weak_from_this(), number = ++waitNumber_](const asio::error_code&) {
    const auto living = weak.lock();
    if (living && living->waits_ && living->waitNumber_ == number) living->pump();
  };
  waits_->socket.cancel();
  waits_->timer.cancel();
  waits_->socket.async_wait(asio::posix::stream_descriptor::wait_read, goOn);
  if ((data.events & POLLOUT) != 0) {
    waits_->socket.async_wait(asio::posix::stream_descriptor::wait_write, goOn);
  }
  if (data.timeout_usec != std::numeric_limits<std::uint64_t>::max()) {
    waits_->timer.expires_at(std::chrono::steady_clock::time_point(data.getAbsoluteTimeout()));
    waits_->timer.async_wait(goOn);
  }
}

}  // namespace lanternfold
