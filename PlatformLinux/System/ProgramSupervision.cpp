#include "PlatformLinux/System/ProgramSupervision.h"

#include <utility>

#include <asio/io_context.hpp>

#include "PlatformLinux/System/EventLoop.h"

namespace lanternfold {

void RunningPrograms::begin() {
  const std::lock_guard lock(mutex_);
  ++count_;
}

void RunningPrograms::end() {
  const std::lock_guard lock(mutex_);
  --count_;
  changed_.notify_all();
}

bool RunningPrograms::waitUntilAllEnded(std::chrono::milliseconds patience) {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, patience, [this] { return count_ == 0; });
}

ProgramSupervision::ProgramSupervision(SpawnedProcess process, EventLoop& loop,
                                       DispatchQueue& mainQueue,
                                       std::shared_ptr<RunningPrograms> running)
    : process_(std::move(process)),
      loop_(loop),
      mainQueue_(mainQueue),
      running_(std::move(running)),
      readable_(loop.context()),
      farewellTimer_(loop.context()) {}

ProgramSupervision::~ProgramSupervision() {
  if (readable_.is_open()) readable_.release();
}

std::error_code ProgramSupervision::watch() {
  std::error_code error;
  static_cast<void>(readable_.assign(process_.descriptor(), error));
  if (!error) {
    running_->begin();
    return {};
  }
  // Nobody would ever reap it.
  process_.kill();
  (void)process_.reap();
  // Asio's own kind of error is equal to none of the standard's.
  return {error.value(), std::generic_category()};
}

void ProgramSupervision::start(std::function<void(ChildEnd)> ended) {
  ended_ = std::move(ended);
  loop_.post([self = shared_from_this()] { self->wait(); });
}

void ProgramSupervision::letGo() {
  ended_ = nullptr;
  loop_.post([self = shared_from_this()] { self->limitFarewell(); });
}

void ProgramSupervision::wait() {
  readable_.async_wait(asio::posix::stream_descriptor::wait_read,
                       [self = shared_from_this()](const std::error_code& error) {
                         if (!error) self->reap();
                       });
}

void ProgramSupervision::reap() {
  hasEnded_ = true;
  const ChildEnd end = process_.reap();
  farewellTimer_.cancel();
  if (!isLetGo_) {
    mainQueue_.async([self = shared_from_this(), end] {
      if (const auto ended = std::exchange(self->ended_, nullptr)) ended(end);
    });
  }
  // The last of it that uses the queue, which may be gone as soon as nothing runs any more.
  running_->end();
}

void ProgramSupervision::limitFarewell() {
  isLetGo_ = true;
  if (hasEnded_) return;
  farewellTimer_.expires_after(farewell);
  farewellTimer_.async_wait([self = shared_from_this()](const std::error_code& error) {
    if (!error) self->kill();
  });
}

}  // namespace lanternfold
