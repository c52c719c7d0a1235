#include "PlatformLinux/System/ProcessEnd.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>

#include "PlatformLinux/System/FileDescriptor.h"
#include "PlatformLinux/System/ProcessDescriptor.h"

namespace lanternfold {

bool waitForEnd(pid_t process, std::chrono::milliseconds limit) {
  using Clock = std::chrono::steady_clock;
  const FileDescriptor handle(::pidfd_open(process, 0));
  if (!handle.isOpen()) return errno == ESRCH;
  const Clock::time_point deadline = Clock::now() + limit;
  int ready = -1;
  do {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    pollfd ending{.fd = handle.get(), .events = POLLIN, .revents = 0};
    ready = ::poll(&ending, 1, static_cast<int>(std::max<long>(left, 0)));
  } while (ready < 0 && errno == EINTR);
  return ready == 1;
}

}  // namespace lanternfold
