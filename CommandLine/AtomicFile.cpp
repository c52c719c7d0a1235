#include "CommandLine/AtomicFile.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace lanternfold {
namespace {

std::string failure(const std::filesystem::path& path, int error) {
  return "cannot write \"" + path.string() + "\": " + std::generic_category().message(error) +
         "; choose another file, or make room and check the folder's permissions";
}

bool writeAll(int descriptor, std::string_view contents) {
  while (!contents.empty()) {
    const ssize_t written = ::write(descriptor, contents.data(), contents.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    contents.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

/// For a device or a pipe, which must stay what it is.
bool writeInPlace(const std::filesystem::path& path, std::string_view contents) {
  const int descriptor = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
  if (descriptor < 0) return false;
  const bool written = writeAll(descriptor, contents);
  const int error = errno;
  ::close(descriptor);
  errno = error;
  return written;
}

/// The permissions of an ordinary new file; the temporary one is private.
mode_t ordinaryMode() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666U & ~mask;
}

/// A file with a name of its own beside the final one, removed again unless it was moved there.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::filesystem::path& path)
      : name_((path.parent_path() / ".lanternfold-XXXXXX").string()),
        descriptor_(::mkostemp(name_.data(), O_CLOEXEC)) {}
  ~TemporaryFile() {
    if (descriptor_ < 0) return;
    ::close(descriptor_);
    if (!moved_) ::unlink(name_.c_str());
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  bool fill(std::string_view contents) {
    return descriptor_ >= 0 && writeAll(descriptor_, contents) && ::fsync(descriptor_) == 0 &&
           ::fchmod(descriptor_, ordinaryMode()) == 0;
  }
  bool moveTo(const std::filesystem::path& path) {
    moved_ = std::rename(name_.c_str(), path.c_str()) == 0;
    return moved_;
  }

 private:
  std::string name_;
  int descriptor_;
  bool moved_ = false;
};

}  // namespace

std::expected<void, std::string> writeFileAtomically(const std::filesystem::path& path,
                                                     std::string_view contents) {
  // A link is followed to the file that it names, as an ordinary write would.
  std::error_code unresolved;
  const auto destination = std::filesystem::weakly_canonical(path, unresolved);
  if (unresolved) return std::unexpected(failure(path, unresolved.value()));
  if (std::filesystem::is_other(destination, unresolved)) {
    if (!writeInPlace(destination, contents)) return std::unexpected(failure(path, errno));
    return {};
  }
  TemporaryFile file(destination);
  if (!file.fill(contents) || !file.moveTo(destination)) {
    return std::unexpected(failure(path, errno));
  }
  return {};
}

}  // namespace lanternfold
