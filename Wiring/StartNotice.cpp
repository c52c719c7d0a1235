#include "Wiring/StartNotice.h"

#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace lanternfold {

bool StartNotice::canBeToldTo(int descriptor) {
  struct stat status{};
  const int flags = ::fcntl(descriptor, F_GETFL);
  return flags >= 0 && (flags & O_ACCMODE) == O_WRONLY && ::fstat(descriptor, &status) == 0 &&
         S_ISFIFO(status.st_mode);
}

StartNotice::StartNotice(std::optional<int> descriptor) : descriptor_(descriptor) {
  // Not for the programs that this one starts: they outlive it, and would keep the pipe open.
  if (descriptor_) (void)::fcntl(*descriptor_, F_SETFD, FD_CLOEXEC);
}

StartNotice::~StartNotice() {
  if (descriptor_) (void)::close(*descriptor_);
}

void StartNotice::tell(std::optional<int> messages) {
  const auto descriptor = std::exchange(descriptor_, std::nullopt);
  if (!descriptor) return;
  (void)std::fflush(stdout);
  const int nobody = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (nobody >= 0) {
    (void)::dup2(nobody, STDOUT_FILENO);
    (void)::dup2(messages.value_or(nobody), STDERR_FILENO);
    (void)::close(nobody);
  }
  // Who waits may be gone, which is none of this program's business.
  (void)!::write(*descriptor, "s", 1);
  (void)::close(*descriptor);
}

}  // namespace lanternfold
