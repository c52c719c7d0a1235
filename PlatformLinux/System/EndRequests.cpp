#include "PlatformLinux/System/EndRequests.h"

#include <atomic>
#include <cerrno>
#include <sys/eventfd.h>
#include <system_error>

#include "PlatformLinux/System/FileDescriptor.h"
#include "Support/FatalError.h"

namespace lanternfold {
namespace {

// What a signal handler may touch: all are free of locks.
std::atomic<int> requestEvent{-1};
std::atomic<bool> isRequested{false};
std::atomic<bool> isInUse{false};

void request(int) {
  const int error = errno;
  isRequested = true;
  (void)::eventfd_write(requestEvent, 1);
  errno = error;
}

/// Open until the process ends: a handler on another thread may be about to write to it.
int makeRequestEvent() {
  static const FileDescriptor event = [] {
    FileDescriptor made(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    if (!made.isOpen()) throw std::system_error(errno, std::system_category());
    return made;
  }();
  return event.get();
}

}  // namespace

EndRequests::EndRequests() {
  requestEvent = makeRequestEvent();
  if (isInUse.exchange(true)) fatalError("the requests to end are caught a second time");
  isRequested = false;
  eventfd_t count = 0;
  (void)::eventfd_read(requestEvent, &count);
  struct sigaction action{};
  // Without SA_RESTART: whoever waits for room in a pipe that nobody reads is to come back.
  action.sa_handler = request;
  for (std::size_t index = 0; index < signals_.size(); ++index) {
    struct sigaction& before = before_[index];
    (void)::sigaction(signals_[index], nullptr, &before);
    if (signals_[index] == SIGHUP && before.sa_handler == SIG_IGN) continue;
    (void)::sigaction(signals_[index], &action, nullptr);
  }
}

EndRequests::~EndRequests() {
  // Ignored before anything else: between the handler and what was before there is no moment at
  // which a second request could end the program.
  struct sigaction ignored{};
  ignored.sa_handler = SIG_IGN;
  for (const int signal : signals_) (void)::sigaction(signal, &ignored, nullptr);
  isInUse = false;
  if (isRequested) return;
  for (std::size_t index = 0; index < signals_.size(); ++index) {
    (void)::sigaction(signals_[index], &before_[index], nullptr);
  }
}

int EndRequests::descriptor() const { return requestEvent; }

}  // namespace lanternfold
