#include "Wiring/FileSoleRecorder.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <utility>

#include "PlatformLinux/System/FileAccess.h"
#include "PlatformLinux/System/FileDescriptor.h"

namespace lanternfold {
namespace {

class LockedFile final : public SoleRecorder::Claim {
 public:
  explicit LockedFile(FileDescriptor file) : file_(std::move(file)) {}

 private:
  FileDescriptor file_;
};

}  // namespace

std::expected<std::unique_ptr<SoleRecorder::Claim>, std::error_code> FileSoleRecorder::claim(
    const std::filesystem::path& folder) {
  FileDescriptor file(::open((folder / soleRecorderFile).c_str(),
                             O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600));
  if (!file.isOpen()) return lastError();
  if (::flock(file.get(), LOCK_EX | LOCK_NB) == 0) {
    return std::make_unique<LockedFile>(std::move(file));
  }
  if (errno == EWOULDBLOCK) return nullptr;
  return lastError();
}

}  // namespace lanternfold
