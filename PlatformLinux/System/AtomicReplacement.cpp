#include "PlatformLinux/System/AtomicReplacement.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <string>
#include <sys/random.h>
#include <unistd.h>

#include "PlatformLinux/System/FileAccess.h"
#include "PlatformLinux/System/FileDescriptor.h"

namespace lanternfold {
namespace {

constexpr int mostLinks = 40;  // as many as the kernel follows
constexpr int mostNamesTried = 16;
constexpr int mostEntriesLookedAt = 4096;
constexpr std::chrono::seconds leftoverAge{60};
constexpr std::size_t digits = 16;

std::string hexadecimal(std::uint64_t value) {
  std::array<char, digits + 1> text{};
  std::snprintf(text.data(), text.size(), "%016llx", static_cast<unsigned long long>(value));
  return text.data();
}

/// FNV-1a: names of any length become a part of a name that is never too long, always the same.
std::uint64_t fingerprint(std::string_view name) {
  std::uint64_t hash = 0xcbf29ce484222325U;
  for (const char byte : name) {
    hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001b3U;
  }
  return hash;
}

/// What the temporary names of one file begin with; sixteen random digits follow.
std::string temporaryPrefix(const std::filesystem::path& name) {
  return ".lanternfold-" + hexadecimal(fingerprint(name.native())) + "-";
}

std::optional<std::string> randomName(const std::string& prefix) {
  std::uint64_t random = 0;
  const ssize_t size = uninterrupted([&] { return ::getrandom(&random, sizeof random, 0); });
  if (size != ssize_t{sizeof random}) return std::nullopt;
  return prefix + hexadecimal(random);
}

bool isTemporaryName(std::string_view name, std::string_view prefix) {
  return name.size() == prefix.size() + digits && name.starts_with(prefix) &&
         name.find_first_not_of("0123456789abcdef", prefix.size()) == std::string_view::npos;
}

/// Nothing of another user, nothing but files, and nothing that a living process still needs.
bool isLeftover(int folder, const char* name) {
  struct stat status{};
  if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return false;
  return S_ISREG(status.st_mode) && status.st_uid == ::geteuid() &&
         std::chrono::seconds(std::time(nullptr) - status.st_mtim.tv_sec) > leftoverAge;
}

struct FolderCloser {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

void removeLeftovers(int folder, const std::string& prefix) {
  const int listed =
      uninterrupted([&] { return ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
  if (listed < 0) return;
  const std::unique_ptr<DIR, FolderCloser> entries(::fdopendir(listed));
  if (!entries) {
    ::close(listed);
    return;
  }
  for (int count = 0; count < mostEntriesLookedAt; ++count) {
    const dirent* const entry = ::readdir(entries.get());
    if (entry == nullptr) return;
    const char* const name = &entry->d_name[0];
    if (isTemporaryName(name, prefix) && isLeftover(folder, name)) ::unlinkat(folder, name, 0);
  }
}

/// The file that takes the other's place: without a name at first where the file system can do
/// that, so that a kill leaves nothing; removed again unless it was moved.
class Replacement {
 public:
  Replacement(int folder, std::string prefix)
      : folder_(folder), prefix_(std::move(prefix)), file_(uninterrupted([&] {
          return ::openat(folder_, ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR);
        })) {}
  ~Replacement() {
    if (!name_.empty()) ::unlinkat(folder_, name_.c_str(), 0);
  }
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;

  /// Whether there is a file to write to, at the cost of a name where it must be.
  [[nodiscard]] bool prepare() { return file_.isOpen() || createNamed(); }

  [[nodiscard]] bool fill(std::string_view bytes, mode_t mode, struct stat& status) {
    return writeAll(file_.get(), bytes) && ::fchmod(file_.get(), mode) == 0 &&
           synchronizeFile(file_.get()) && ::fstat(file_.get(), &status) == 0;
  }

  [[nodiscard]] bool moveTo(const std::string& name) {
    if (name_.empty() && !giveName()) return false;
    if (::renameat(folder_, name_.c_str(), folder_, name.c_str()) != 0) return false;
    name_.clear();
    return true;
  }

  /// Starts anew with a file that has a name: where /proc is missing, one without cannot get one.
  [[nodiscard]] bool needsName() const { return needsName_; }
  [[nodiscard]] bool createNamed() {
    return withFreeName([this](const char* name) {
      file_ = FileDescriptor(uninterrupted([&] {
        return ::openat(folder_, name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
      }));
      return file_.isOpen();
    });
  }

 private:
  bool giveName() {
    const std::string unnamed = "/proc/self/fd/" + std::to_string(file_.get());
    const bool named = withFreeName([&](const char* name) {
      return ::linkat(AT_FDCWD, unnamed.c_str(), folder_, name, AT_SYMLINK_FOLLOW) == 0;
    });
    needsName_ = !named;
    return named;
  }

  template <typename Make>
  bool withFreeName(Make make) {
    for (int count = 0; count < mostNamesTried; ++count) {
      const auto name = randomName(prefix_);
      if (!name) return false;
      if (make(name->c_str())) {
        name_ = *name;
        return true;
      }
      if (errno != EEXIST) return false;
    }
    return false;
  }

  int folder_;
  std::string prefix_;
  FileDescriptor file_;
  std::string name_;  ///< empty while it has none, and once it was moved
  bool needsName_ = false;
};

/// The file that a chain of links ends at, whether it is there or not.
std::expected<std::filesystem::path, std::error_code> destinationOf(std::filesystem::path path) {
  for (int count = 0; count < mostLinks; ++count) {
    std::error_code error;
    const auto target = std::filesystem::read_symlink(path, error);
    if (error == std::errc::invalid_argument || error == std::errc::no_such_file_or_directory) {
      return path;
    }
    if (error) return std::unexpected(codeOf(error.value()));
    path = path.parent_path() / target;
  }
  return std::unexpected(codeOf(ELOOP));
}

/// A folder that may be written to but not listed is no reason to fail.
FileDescriptor openFolder(const std::filesystem::path& path) {
  const char* const name = path.empty() ? "." : path.c_str();
  FileDescriptor folder(
      uninterrupted([&] { return ::open(name, O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
  if (folder.isOpen() || errno != EACCES) return folder;
  return FileDescriptor(
      uninterrupted([&] { return ::open(name, O_PATH | O_DIRECTORY | O_CLOEXEC); }));
}

/// Some file systems have nothing to do for a folder and say so.
bool synchronizeFolder(int folder) {
  return synchronizeFile(folder) || errno == EINVAL || errno == EBADF || errno == ENOTSUP;
}

}  // namespace

std::expected<FileAttributes, std::error_code> replaceFileAtomically(
    const std::filesystem::path& path, std::string_view bytes, mode_t mode) {
  const auto destination = destinationOf(path);
  if (!destination) return std::unexpected(destination.error());
  const std::string name = destination->filename().native();
  const FileDescriptor folder = openFolder(destination->parent_path());
  if (!folder.isOpen()) return lastError();
  struct stat status{};
  if (::fstatat(folder.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0) {
    if (const auto error = errorOfKind(status)) return std::unexpected(error);
  }
  const std::string prefix = temporaryPrefix(name);
  removeLeftovers(folder.get(), prefix);

  Replacement file(folder.get(), prefix);
  if (!file.prepare() || !file.fill(bytes, mode, status)) return lastError();
  if (!file.moveTo(name)) {
    if (!file.needsName()) return lastError();
    if (!file.createNamed() || !file.fill(bytes, mode, status) || !file.moveTo(name)) {
      return lastError();
    }
  }
  if (!synchronizeFolder(folder.get())) return lastError();
  return attributesOf(status);
}

}  // namespace lanternfold
