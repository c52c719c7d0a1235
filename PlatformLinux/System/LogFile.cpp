#include "PlatformLinux/System/LogFile.h"

#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "PlatformLinux/System/FileAccess.h"

namespace lanternfold {

std::expected<LogFile, std::error_code> LogFile::open(const std::filesystem::path& file) {
  FileDescriptor opened(::open(
      file.c_str(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600));
  if (!opened.isOpen()) return lastError();
  struct stat status{};
  if (::fstat(opened.get(), &status) != 0) return lastError();
  if (const std::error_code error = errorOfKind(status)) return std::unexpected(error);
  // One of another mode was made by somebody else.
  if (::fchmod(opened.get(), S_IRUSR | S_IWUSR) != 0) return lastError();
  return LogFile(std::move(opened));
}

void LogFile::beginAnew() const { (void)!::ftruncate(file_.get(), 0); }

void LogFile::keepWithin(std::size_t bytes) const {
  struct stat status{};
  if (::fstat(file_.get(), &status) != 0) return;
  if (status.st_size <= static_cast<off_t>(bytes)) return;
  std::string newer(bytes / 2, '\0');
  const ssize_t length = uninterrupted([&] {
    return ::pread(file_.get(), newer.data(), newer.size(),
                   status.st_size - static_cast<off_t>(newer.size()));
  });
  newer.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
  newer.erase(0, newer.find('\n') + 1);
  if (::ftruncate(file_.get(), 0) == 0) (void)writeAll(file_.get(), newer);
}

}  // namespace lanternfold
