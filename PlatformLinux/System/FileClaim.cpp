#include "PlatformLinux/System/FileClaim.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

#include "PlatformLinux/System/FileAccess.h"

namespace lanternfold {

std::expected<std::optional<FileClaim>, std::error_code> FileClaim::claim(
    const std::filesystem::path& file) {
  FileDescriptor opened(
      ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600));
  if (!opened.isOpen()) return lastError();
  if (::flock(opened.get(), LOCK_EX | LOCK_NB) == 0) return FileClaim(std::move(opened));
  if (errno == EWOULDBLOCK) return std::nullopt;
  return lastError();
}

}  // namespace lanternfold
