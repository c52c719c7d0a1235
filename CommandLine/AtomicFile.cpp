#include "CommandLine/AtomicFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>

#include "PlatformLinux/System/AtomicReplacement.h"
#include "PlatformLinux/System/FileAccess.h"
#include "PlatformLinux/System/FileDescriptor.h"

namespace lanternfold {
namespace {

std::string failure(const std::filesystem::path& path, int error) {
  return "cannot write \"" + path.string() + "\": " + std::generic_category().message(error) +
         "; choose another file, or make room and check the folder's permissions";
}

/// For a device or a pipe, which must stay what it is.
bool writeInPlace(const std::filesystem::path& path, std::string_view contents) {
  const FileDescriptor file(
      uninterrupted([&] { return ::open(path.c_str(), O_WRONLY | O_CLOEXEC); }));
  return file.isOpen() && writeAll(file.get(), contents);
}

/// The permissions of an ordinary new file.
mode_t ordinaryMode() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666U & ~mask;
}

/// Those of the file that is replaced, which its owner may have chosen.
mode_t modeFor(const std::filesystem::path& path) {
  struct stat attributes{};
  if (::stat(path.c_str(), &attributes) != 0) return ordinaryMode();
  constexpr mode_t permissions = 0777;
  return attributes.st_mode & permissions;
}

}  // namespace

std::expected<void, std::string> writeFileAtomically(const std::filesystem::path& path,
                                                     std::string_view contents) {
  std::error_code unknown;
  if (std::filesystem::is_other(path, unknown)) {
    if (!writeInPlace(path, contents)) return std::unexpected(failure(path, errno));
    return {};
  }
  const auto replaced = replaceFileAtomically(path, contents, modeFor(path));
  if (!replaced) return std::unexpected(failure(path, replaced.error().value()));
  return {};
}

}  // namespace lanternfold
