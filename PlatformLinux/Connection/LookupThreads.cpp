#include "PlatformLinux/Connection/LookupThreads.h"

#include <thread>
#include <utility>

#include "PlatformLinux/System/ThreadTraits.h"

namespace lanternfold {

LookupThreads::LookupThreads(std::size_t most, StartThread startThread)
    : most_(most), startThread_(std::move(startThread)) {}

std::expected<LookupThreads::Ticket, std::error_code> LookupThreads::run(Work work) {
  const std::lock_guard lock(mutex_);
  const Ticket ticket = nextTicket_++;
  waiting_.emplace(ticket, std::move(work));
  if (running_ >= most_) return ticket;
  try {
    startThread_([self = shared_from_this()] { self->runWaiting(); });
    ++running_;
  } catch (const std::system_error& error) {
    // One that runs takes it when its own is done.
    if (running_ > 0) return ticket;
    waiting_.erase(ticket);
    return std::unexpected(error.code());
  }
  return ticket;
}

void LookupThreads::withdraw(Ticket ticket) {
  decltype(waiting_)::node_type withdrawn;  // let go of without the lock
  const std::lock_guard lock(mutex_);
  withdrawn = waiting_.extract(ticket);
}

void LookupThreads::startDetached(Work work) {
  std::thread([work = std::move(work)]() mutable {
    nameCurrentThread("address-lookup");
    work();
  }).detach();
}

void LookupThreads::runWaiting() {
  while (std::optional<Work> work = next()) (*work)();
}

std::optional<LookupThreads::Work> LookupThreads::next() {
  const std::lock_guard lock(mutex_);
  if (waiting_.empty()) {
    --running_;
    return std::nullopt;
  }
  return std::move(waiting_.extract(waiting_.begin()).mapped());
}

}  // namespace lanternfold
