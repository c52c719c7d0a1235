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

/// Has the loop watch the socket, which is none afterwards if it cannot.
template <typename Socket>
void watch(asio::posix::stream_descriptor& readable, std::optional<Socket>& socket) {
  if (!socket) return;
  asio::error_code error;
  static_cast<void>(readable.assign(socket->descriptor(), error));
  if (error) socket.reset();
}

}  // namespace

struct PathMonitorSession::Waits {
  explicit Waits(asio::io_context& context)
      : readable(context), wifiReadable(context), due(context) {}
  /// The descriptors stay the event sockets' own.
  ~Waits() {
    if (readable.is_open()) readable.release();
    if (wifiReadable.is_open()) wifiReadable.release();
  }
  Waits(const Waits&) = delete;
  Waits& operator=(const Waits&) = delete;

  asio::posix::stream_descriptor readable;
  asio::posix::stream_descriptor wifiReadable;
  asio::steady_timer due;
};

PathMonitorSession::Sources PathMonitorSession::Sources::open(
    const LinkSurvey& survey, std::optional<PathInterfaceType> requiredType) {
  Sources sources{.events = valueOrNone(NetlinkEventSocket::open(watchedGroups)),
                  .wifiEvents = std::nullopt,
                  .tables = std::nullopt,
                  .requiredType = requiredType};
  // Links are what everything else is told of: without their reports there are none at all.
  const bool seesWifi = !requiredType || *requiredType == PathInterfaceType::wifi;
  if (sources.events && seesWifi) {
    sources.wifiEvents = valueOrNone(WifiEventSocket::open(wifiStateGroups()));
  }
  sources.tables = valueOrNone(NetworkSnapshotReader::open(survey));
  return sources;
}

PathMonitorSession::PathMonitorSession(EventLoop& loop, DispatchQueue& queue,
                                       std::weak_ptr<PathUpdateRecipient> recipient,
                                       Sources sources)
    : loop_(loop), queue_(queue), recipient_(std::move(recipient)), sources_(std::move(sources)) {}

PathMonitorSession::~PathMonitorSession() = default;

void PathMonitorSession::begin() {
  waits_ = std::make_unique<Waits>(loop_.context());
  watch(waits_->readable, sources_.events);
  watch(waits_->wifiReadable, sources_.wifiEvents);
  noteChange();
  waitForEvents();
  waitForWifiEvents();
}

void PathMonitorSession::end() {
  waits_.reset();
  sources_.events.reset();
  sources_.wifiEvents.reset();
  sources_.tables.reset();
}

void PathMonitorSession::waitForEvents() {
  if (!waits_ || !sources_.events) return;
  waits_->readable.async_wait(asio::posix::stream_descriptor::wait_read,
                              [session = shared_from_this()](const asio::error_code& error) {
                                if (!error) session->takeEvents();
                              });
}

/// After a failure of the socket the last state is still reported, then only news of the Wi-Fi
/// come.
void PathMonitorSession::takeEvents() {
  if (!waits_ || !sources_.events) return;
  bool hasNews = false;
  const auto outcome = sources_.events->drain(
      [&](const NetlinkMessage& message) { hasNews = hasNews || isNews(message, known_); });
  if (hasNews || !outcome || *outcome == NetlinkEventOutcome::overflowed) noteChange();
  if (outcome) waitForEvents();
}

void PathMonitorSession::waitForWifiEvents() {
  if (!waits_ || !sources_.wifiEvents) return;
  waits_->wifiReadable.async_wait(asio::posix::stream_descriptor::wait_read,
                                  [session = shared_from_this()](const asio::error_code& error) {
                                    if (!error) session->takeWifiEvents();
                                  });
}

/// After a failure of this socket alone the changes of links still come.
void PathMonitorSession::takeWifiEvents() {
  if (!waits_ || !sources_.wifiEvents) return;
  const auto drained = sources_.wifiEvents->drain();
  if (!drained || drained->news == WifiNews::state) noteChange();
  if (drained) waitForWifiEvents();
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
