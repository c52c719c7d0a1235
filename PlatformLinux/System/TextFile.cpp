#include "PlatformLinux/System/TextFile.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

#include "PlatformLinux/System/FileDescriptor.h"

namespace lanternfold {

namespace {

constexpr std::size_t chunkSize = 64 * 1024;

}  // namespace

std::optional<std::string> readTextFile(const char* path, std::size_t maximumSize) {
  const FileDescriptor file(open(path, O_RDONLY | O_CLOEXEC));
  if (!file.isOpen()) return std::nullopt;
  std::string text;
  while (true) {
    const std::size_t used = text.size();
    ssize_t count = 0;
    // A chunk is not cleared before it is read into: most of these files are a few bytes long.
    text.resize_and_overwrite(used + chunkSize, [&](char* bytes, std::size_t) {
      count = read(file.get(), bytes + used, chunkSize);
      return used + static_cast<std::size_t>(count < 0 ? 0 : count);
    });
    if (count < 0 && errno == EINTR) continue;
    if (count < 0 || text.size() > maximumSize) return std::nullopt;
    if (count == 0) return text;
  }
}

}  // namespace lanternfold
