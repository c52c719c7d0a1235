#include "PlatformLinux/System/PosixFileSystem.h"

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "PlatformLinux/System/AtomicReplacement.h"
#include "PlatformLinux/System/FileAccess.h"
#include "PlatformLinux/System/FileDescriptor.h"

namespace lanternfold {
namespace {

constexpr mode_t privateMode = S_IRUSR | S_IWUSR;
/// A pipe that takes the file's place is not waited for, a terminal does not become ours.
constexpr int openFlags = O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

struct RegularFile {
  FileDescriptor descriptor;
  struct stat status;
};

/// Devices are told by their kind before they are opened, which alone can set one in motion.
std::expected<RegularFile, std::error_code> openRegular(const std::filesystem::path& path,
                                                        int flags) {
  struct stat status{};
  if (::stat(path.c_str(), &status) == 0) {
    if (const auto error = errorOfKind(status)) return std::unexpected(error);
  }
  FileDescriptor file(
      uninterrupted([&] { return ::open(path.c_str(), flags | openFlags, privateMode); }));
  if (!file.isOpen() || ::fstat(file.get(), &status) != 0) return lastError();
  if (const auto error = errorOfKind(status)) return std::unexpected(error);
  return RegularFile{.descriptor = std::move(file), .status = status};
}

/// To the end of the file as it is, which may lie further than when it was opened.
std::expected<std::string, std::error_code> readWhole(const RegularFile& file,
                                                      std::size_t maximumBytes) {
  const auto expectedSize = static_cast<std::size_t>(file.status.st_size);
  if (expectedSize > maximumBytes) return std::unexpected(codeOf(EFBIG));
  constexpr std::size_t leastRoom = 4096;
  std::string bytes;
  std::size_t used = 0;
  while (true) {
    if (used == bytes.size()) bytes.resize(std::max(expectedSize + 1, used + used / 2 + leastRoom));
    const ssize_t count = uninterrupted(
        [&] { return ::read(file.descriptor.get(), bytes.data() + used, bytes.size() - used); });
    if (count < 0) return lastError();
    used += static_cast<std::size_t>(count);
    if (used > maximumBytes) return std::unexpected(codeOf(EFBIG));
    if (count == 0) break;
  }
  bytes.resize(used);
  return bytes;
}

/// Whether the file got the name, which must be free; errno says why not.
bool giveName(const std::filesystem::path& path, const std::filesystem::path& name) {
  if (::link(path.c_str(), name.c_str()) == 0) return true;
  const bool hasOneNameOnly = errno == EPERM || errno == ENOTSUP || errno == EMLINK;
  return hasOneNameOnly &&
         ::renameat2(AT_FDCWD, path.c_str(), AT_FDCWD, name.c_str(), RENAME_NOREPLACE) == 0;
}

}  // namespace

std::expected<FileAttributes, std::error_code> PosixFileSystem::attributes(
    const std::filesystem::path& path) const {
  struct stat status{};
  if (::stat(path.c_str(), &status) != 0) return lastError();
  return attributesOf(status);
}

std::expected<FileContents, std::error_code> PosixFileSystem::readFile(
    const std::filesystem::path& path, std::size_t maximumBytes) const {
  const auto file = openRegular(path, O_RDONLY);
  if (!file) return std::unexpected(file.error());
  auto bytes = readWhole(*file, maximumBytes);
  if (!bytes) return std::unexpected(bytes.error());
  return FileContents{.bytes = std::move(*bytes), .attributes = attributesOf(file->status)};
}

std::expected<FileAttributes, std::error_code> PosixFileSystem::replaceFile(
    const std::filesystem::path& path, std::string_view bytes) {
  return replaceFileAtomically(path, bytes, privateMode);
}

std::expected<void, std::error_code> PosixFileSystem::createEmptyFile(
    const std::filesystem::path& path) {
  const auto file = openRegular(path, O_WRONLY | O_CREAT | O_TRUNC);
  if (!file) return std::unexpected(file.error());
  return {};
}

std::expected<void, std::error_code> PosixFileSystem::overwriteFile(
    const std::filesystem::path& path, std::string_view bytes) {
  const auto file = openRegular(path, O_WRONLY);
  if (!file) return std::unexpected(file.error());
  const int descriptor = file->descriptor.get();
  const bool written = uninterrupted([&] { return ::ftruncate(descriptor, 0); }) == 0 &&
                       writeAll(descriptor, bytes) && synchronizeFile(descriptor);
  if (!written) return lastError();
  return {};
}

std::expected<std::filesystem::path, std::error_code> PosixFileSystem::keepAside(
    const std::filesystem::path& path) {
  std::error_code error;
  // The file that a link names, beside itself, as in a replacement.
  const auto file = std::filesystem::canonical(path, error);
  if (error) return std::unexpected(codeOf(error.value()));
  struct stat status{};
  if (::stat(file.c_str(), &status) != 0) return lastError();
  if (const auto kind = errorOfKind(status)) return std::unexpected(kind);
  for (int number = 1; number <= mostKeptAside; ++number) {
    std::filesystem::path name = file.native() + ".damaged-" + std::to_string(number);
    struct stat other{};
    const bool isTaken = ::lstat(name.c_str(), &other) == 0;
    if (isTaken && other.st_dev == status.st_dev && other.st_ino == status.st_ino) return name;
    if (isTaken) continue;
    if (giveName(file, name)) return name;
    if (errno != EEXIST) return lastError();
  }
  return std::unexpected(codeOf(EEXIST));
}

std::expected<void, std::error_code> PosixFileSystem::removeFile(
    const std::filesystem::path& path) {
  if (::unlink(path.c_str()) != 0) return lastError();
  return {};
}

}  // namespace lanternfold
