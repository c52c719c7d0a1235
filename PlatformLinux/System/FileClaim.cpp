#include "PlatformLinux/System/FileClaim.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <unistd.h>

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

void FileClaim::signWithProcess() const {
  const std::string text = std::to_string(::getpid()) + "\n";
  if (::ftruncate(file_.get(), 0) == 0) (void)!::pwrite(file_.get(), text.data(), text.size(), 0);
}

std::optional<pid_t> FileClaim::signature(const std::filesystem::path& file) {
  const FileDescriptor opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
  if (!opened.isOpen()) return std::nullopt;
  std::array<char, 16> text{};
  const ssize_t length =
      uninterrupted([&] { return ::read(opened.get(), text.data(), text.size()); });
  if (length <= 0) return std::nullopt;
  const char* const end = text.data() + length;
  pid_t process = 0;
  const auto [rest, error] = std::from_chars(text.data(), end, process);
  const bool isWhole = error == std::errc{} && rest + 1 == end && *rest == '\n';
  return isWhole && process > 0 ? std::optional(process) : std::nullopt;
}

}  // namespace lanternfold
