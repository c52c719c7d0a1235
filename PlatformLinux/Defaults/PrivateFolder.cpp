#include "PlatformLinux/Defaults/PrivateFolder.h"

#include <cerrno>
#include <cstdlib>
#include <pwd.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace lanternfold {
namespace {

namespace fs = std::filesystem;

/// Cut where the system could not follow a name anyway.
std::string quoted(const fs::path& path) {
  constexpr std::size_t longestName = 512;
  const std::string& name = path.native();
  if (name.size() <= longestName) return '"' + name + '"';
  return '"' + name.substr(0, longestName) + "...\"";
}

std::string remedyFor(int error, const std::string& chooser) {
  switch (error) {
    case ELOOP:
      return "remove the link in it that leads back to itself, or choose another folder with " +
             chooser;
    case ENAMETOOLONG:
      return "choose a folder with a shorter name with " + chooser;
    case EACCES:
    case EPERM:
      return "allow this user to write into the folder that it belongs in, or choose another one "
             "with " +
             chooser;
    case ENOSPC:
    case EDQUOT:
      return "make room on the disk, or choose another folder with " + chooser;
    case EROFS:
      return "choose a folder on a disk that can be written to with " + chooser;
    default:
      return "choose another folder with " + chooser;
  }
}

std::unexpected<std::string> isNoFolder(const fs::path& path, const std::string& chooser) {
  return std::unexpected(quoted(path) + " is not a folder; move it away, or choose a folder with " +
                         chooser);
}

/// What stands in the way where a folder's name leads through something that is none.
std::unexpected<std::string> somethingElseIsAbove(const fs::path& path,
                                                  const std::string& chooser) {
  for (fs::path above = path.parent_path(); above.has_relative_path();
       above = above.parent_path()) {
    struct stat status{};
    if (::stat(above.c_str(), &status) == 0 && !S_ISDIR(status.st_mode))
      return isNoFolder(above, chooser);
  }
  return cannotMakeFolder(path, ENOTDIR, chooser);
}

/// An absolute path in the environment variable `name`; anything else counts as unset.
std::optional<fs::path> absoluteFolderIn(const char* name) {
  const char* const text = std::getenv(name);
  if (text == nullptr || *text != '/') return std::nullopt;
  return text;
}

std::optional<fs::path> homeInPasswordDatabase() {
  constexpr std::size_t longestEntry = 64 * std::size_t{1024};
  std::vector<char> text(longestEntry);
  passwd entry{};
  passwd* found = nullptr;
  if (::getpwuid_r(::geteuid(), &entry, text.data(), text.size(), &found) != 0) return std::nullopt;
  if (found == nullptr || found->pw_dir == nullptr || *found->pw_dir != '/') return std::nullopt;
  return found->pw_dir;
}

/// Another process may make the same folder meanwhile.
std::expected<void, std::string> makeFolder(const fs::path& path, const std::string& chooser) {
  if (::mkdir(path.c_str(), S_IRWXU) == 0 || errno == EEXIST) return {};
  if (errno == ENOTDIR) return somethingElseIsAbove(path, chooser);
  if (errno != ENOENT || path.parent_path() == path) return cannotMakeFolder(path, errno, chooser);
  if (const auto made = makeFolder(path.parent_path(), chooser); !made) return made;
  if (::mkdir(path.c_str(), S_IRWXU) == 0 || errno == EEXIST) return {};
  return cannotMakeFolder(path, errno, chooser);
}

}  // namespace

std::optional<fs::path> usersFolder(const char* variable, const char* belowHome) {
  if (const auto folder = absoluteFolderIn(variable)) return folder;
  auto home = absoluteFolderIn("HOME");
  if (!home) home = homeInPasswordDatabase();
  return home ? std::optional(*home / belowHome) : std::nullopt;
}

std::unexpected<std::string> cannotMakeFolder(const fs::path& path, int error,
                                              const std::string& chooser) {
  return std::unexpected("cannot make the folder " + quoted(path) + ": " +
                         std::generic_category().message(error) + "; " + remedyFor(error, chooser));
}

std::expected<void, std::string> checkPrivateFolder(const fs::path& path,
                                                    const std::string& chooser) {
  struct stat status{};
  if (::stat(path.c_str(), &status) != 0) {
    if (errno != ENOENT) return cannotMakeFolder(path, errno, chooser);
    return std::unexpected(quoted(path) +
                           " is a link that leads nowhere; remove it or make what it leads to, or "
                           "choose another folder with " +
                           chooser);
  }
  if (!S_ISDIR(status.st_mode)) return isNoFolder(path, chooser);
  if (status.st_uid != ::geteuid()) {
    return std::unexpected("the folder " + quoted(path) +
                           " belongs to another user; choose a folder of your own with " + chooser);
  }
  if ((status.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
    return std::unexpected(
        "other users may write into the folder " + quoted(path) +
        "; take that right away with chmod go-w, or choose another folder with " + chooser);
  }
  return {};
}

std::expected<void, std::string> makePrivateFolder(const fs::path& path,
                                                   const std::string& chooser) {
  if (const auto made = makeFolder(path, chooser); !made) return made;
  return checkPrivateFolder(path, chooser);
}

}  // namespace lanternfold
