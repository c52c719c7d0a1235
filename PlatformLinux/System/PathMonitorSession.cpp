#include "PlatformLinux/System/PathMonitorSession.h"

#include <chrono>
#include <utility>

#include <asio/io_context.hpp>
#include <asio/posix/stream_descriptor.hpp>
#include <asio/steady_timer.hpp>
#include <linux/rtnetlink.h>

#include "PlatformLinux/Path/PathComputation.h"
#include "PlatformLinux/Path/PathEvents.h"

namespace lanternfold {

namespace {

constexpr unsigned watchedGroups =
    RTMGRP_LINK | RTMGRP_IPV4_IFADDR | RTMGRP_IPV6_IFADDR | RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_ROUTE;

/// Tables that cannot be read for this many times in a row, at ten a second, are given up until the
/// next change.
constexpr int mostFailedLooks = 50;

template <typename Value>
std::optional<Value> valueOrNone(std::expected<Value, NetworkKernelError> result) {
  return result ? std::optional<Value>(std::move(*result)) : std::nullopt;
}

}  // namespace

struct PathMonitorSession::Waits {
  explicit Waits(asio::io_context& context) : readable(context), due(context) {}
  /// The descriptor stays the event socket's own.
  ~Waits() {
    if (readable.is_open()) readable.release();
  }
  Waits(const Waits&) = delete;
  Waits& operator=(const Waits&) = delete;

  asio::posix::stream_descriptor readable;
  asio::steady_timer due;
};

PathMonitorSession::Sources PathMonitorSession::Sources::open(
    const LinkSurvey& survey, std::optional<PathInterfaceType> requiredType) {
  return {.events = valueOrNone(NetlinkEventSocket::open(watchedGroups)),
          .tables = valueOrNone(NetworkSnapshotReader::open(survey)),
          .requiredType = requiredType};
}

PathMonitorSession::PathMonitorSession(EventLoop& loop, DispatchQueue& queue,
                                       std::weak_ptr<PathUpdateRecipient> recipient,
                                       Sources sources)
    : loop_(loop), queue_(queue), recipient_(std::move(recipient)), sources_(std::move(sources)) {}

PathMonitorSession::~PathMonitorSession() = default;

void PathMonitorSession::begin() {
  waits_ = std::make_unique<Waits>(loop_.context());
  asio::error_code error;
  if (sources_.events) {
    static_cast<void>(waits_->readable.assign(sources_.events->descriptor(), error));
  }
  if (error) sources_.events.reset();
  noteChange();
  waitForEvents();
}

void PathMonitorSession::end() {
  waits_.reset();
  sources_.events.reset();
  sources_.tables.reset();
}

void PathMonitorSession::waitForEvents() {
  if (!waits_ || !sources_.events) return;
  waits_->readable.async_wait(asio::posix::stream_descriptor::wait_read,
                              [session = shared_from_this()](const asio::error_code& error) {
                                if (!error) session->takeEvents();
                              });
}

/// After a failure of the socket the last state is still reported, then nothing more comes.
void PathMonitorSession::takeEvents() {
  if (!waits_ || !sources_.events) return;
  bool hasNews = false;
  const auto outcome = sources_.events->drain(
      [&](const NetlinkMessage& message) { hasNews = hasNews || isNews(message, known_); });
  if (hasNews || !outcome || *outcome == NetlinkEventOutcome::overflowed) noteChange();
  if (outcome) waitForEvents();
}

void PathMonitorSession::noteChange() {
  const auto moment = pace_.changed(std::chrono::steady_clock::now());
  if (!moment) return;
  waits_->due.expires_at(*moment);
  waits_->due.async_wait([session = shared_from_this()](const asio::error_code& error) {
    if (!error && session->waits_) session->report();
  });
}

void PathMonitorSession::report() {
  pace_.reported(std::chrono::steady_clock::now());
  const bool isFirst = std::exchange(isFirstReport_, false);
  if (!look()) {
    tryAgain();
    if (!isFirst) return;
  }
  queue_.async([recipient = recipient_, path = pathFrom(known_, sources_.requiredType)] {
    const auto receiver = recipient.lock();
    if (receiver && !receiver->isCancelled && receiver->handler) receiver->handler(path);
  });
}

bool PathMonitorSession::look() {
  if (!sources_.tables) return false;
  auto snapshot = sources_.tables->read();
  if (!snapshot) return false;
  known_ = std::move(*snapshot);
  failedLooks_ = 0;
  return true;
}

/// The change that was to be reported would otherwise wait for the next one.
void PathMonitorSession::tryAgain() {
  if (sources_.events && ++failedLooks_ <= mostFailedLooks) noteChange();
}

}  // namespace lanternfold
