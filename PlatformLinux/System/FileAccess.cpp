#include "PlatformLinux/System/FileAccess.h"

#include <chrono>
#include <unistd.h>

namespace lanternfold {

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written =
        uninterrupted([&] { return ::write(descriptor, bytes.data(), bytes.size()); });
    if (written < 0) return false;
    if (written == 0) {
      errno = EIO;
      return false;
    }
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool synchronizeFile(int descriptor) {
  return uninterrupted([&] { return ::fsync(descriptor); }) == 0;
}

FileAttributes attributesOf(const struct stat& status) {
  using Clock = std::chrono::system_clock;
  const auto sinceEpoch = std::chrono::seconds(status.st_mtim.tv_sec) +
                          std::chrono::nanoseconds(status.st_mtim.tv_nsec);
  return {
      .modificationDate =
          Clock::time_point(std::chrono::duration_cast<Clock::duration>(sinceEpoch)),
      .sizeBytes = static_cast<std::uint64_t>(status.st_size),
      .fileNumber = status.st_ino,
  };
}

std::error_code errorOfKind(const struct stat& status) {
  if (S_ISREG(status.st_mode)) return {};
  return codeOf(S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
}

}  // namespace lanternfold
