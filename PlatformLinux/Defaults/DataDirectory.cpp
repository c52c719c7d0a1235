#include "PlatformLinux/Defaults/DataDirectory.h"

#include <cerrno>
#include <cstdlib>
#include <pwd.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

#include "Platform/GroupContainer.h"
#include "Support/FatalError.h"

namespace lanternfold {
namespace {

namespace fs = std::filesystem;

constexpr const char* productFolder = "net.quernaple.LanternfoldX";

/// Cut where the system could not follow a name anyway.
std::string quoted(const fs::path& path) {
  constexpr std::size_t longestName = 512;
  const std::string& name = path.native();
  if (name.size() <= longestName) return '"' + name + '"';
  return '"' + name.substr(0, longestName) + "...\"";
}

std::string remedyFor(int error) {
  switch (error) {
    case ELOOP:
      return "remove the link in it that leads back to itself, or choose another folder with "
             "--data-dir";
    case ENAMETOOLONG:
      return "choose a folder with a shorter name with --data-dir";
    case EACCES:
    case EPERM:
      return "allow this user to write into the folder that it belongs in, or choose another one "
             "with --data-dir";
    case ENOSPC:
    case EDQUOT:
      return "make room on the disk, or choose another folder with --data-dir";
    case EROFS:
      return "choose a folder on a disk that can be written to with --data-dir";
    default:
      return "choose another folder with --data-dir";
  }
}

std::unexpected<std::string> cannotMake(const fs::path& path, int error) {
  return std::unexpected("cannot make the folder " + quoted(path) + ": " +
                         std::generic_category().message(error) + "; " + remedyFor(error));
}

std::unexpected<std::string> isNoFolder(const fs::path& path) {
  return std::unexpected(quoted(path) +
                         " is not a folder; move it away, or choose a folder with --data-dir");
}

/// What stands in the way where a folder's name leads through something that is none.
std::unexpected<std::string> somethingElseIsAbove(const fs::path& path) {
  for (fs::path above = path.parent_path(); above.has_relative_path();
       above = above.parent_path()) {
    struct stat status{};
    if (::stat(above.c_str(), &status) == 0 && !S_ISDIR(status.st_mode)) return isNoFolder(above);
  }
  return cannotMake(path, ENOTDIR);
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

DataDirectory::Folder usersDataFolder() {
  if (const auto folder = absoluteFolderIn("XDG_DATA_HOME")) return *folder / productFolder;
  auto home = absoluteFolderIn("HOME");
  if (!home) home = homeInPasswordDatabase();
  if (home) return *home / ".local" / "share" / productFolder;
  return std::unexpected(
      "this user has no home folder to keep data in; set HOME or XDG_DATA_HOME, or choose a folder "
      "with --data-dir");
}

DataDirectory::Folder located(const std::optional<fs::path>& chosen) {
  if (!chosen) return usersDataFolder();
  std::error_code error;
  fs::path folder = fs::absolute(*chosen, error);
  if (error) return cannotMake(*chosen, error.value());
  return folder;
}

/// Another process may make the same folder meanwhile.
std::expected<void, std::string> makeFolder(const fs::path& path) {
  if (::mkdir(path.c_str(), S_IRWXU) == 0 || errno == EEXIST) return {};
  if (errno == ENOTDIR) return somethingElseIsAbove(path);
  if (errno != ENOENT || path.parent_path() == path) return cannotMake(path, errno);
  if (const auto made = makeFolder(path.parent_path()); !made) return made;
  if (::mkdir(path.c_str(), S_IRWXU) == 0 || errno == EEXIST) return {};
  return cannotMake(path, errno);
}

std::expected<void, std::string> checkFolder(const fs::path& path) {
  struct stat status{};
  if (::stat(path.c_str(), &status) != 0) {
    if (errno != ENOENT) return cannotMake(path, errno);
    return std::unexpected(quoted(path) +
                           " is a link that leads nowhere; remove it or make what it leads to, or "
                           "choose another folder with --data-dir");
  }
  if (!S_ISDIR(status.st_mode)) return isNoFolder(path);
  if (status.st_uid != ::geteuid()) {
    return std::unexpected("the folder " + quoted(path) +
                           " belongs to another user; choose a folder of your own with --data-dir");
  }
  if ((status.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
    return std::unexpected("other users may write into the folder " + quoted(path) +
                           "; take that right away with chmod go-w, or choose another folder with "
                           "--data-dir");
  }
  return {};
}

std::expected<void, std::string> makePrivateFolder(const fs::path& path) {
  if (const auto made = makeFolder(path); !made) return made;
  return checkFolder(path);
}

}  // namespace

DataDirectory::DataDirectory(const std::optional<fs::path>& chosen) : location_(located(chosen)) {}

DataDirectory::Folder DataDirectory::folder() const { return folderBelow({}); }

std::expected<void, std::string> DataDirectory::checkIfThere() const {
  if (!location_) return std::unexpected(location_.error());
  struct stat status{};
  if (::stat(location_->c_str(), &status) != 0 && errno == ENOENT) return {};
  return checkFolder(*location_);
}

DataDirectory::Folder DataDirectory::defaultsFolder() const { return folderBelow("defaults"); }

DataDirectory::Folder DataDirectory::groupFolder(std::string_view groupId) const {
  if (!isGroupIdentifier(groupId)) fatalError("a folder was asked for by what names no group");
  return folderBelow(fs::path("groups") / groupId);
}

DataDirectory::Folder DataDirectory::metricsFolder() const { return folderBelow("metrics"); }

DataDirectory::Folder DataDirectory::folderBelow(const fs::path& names) const {
  if (!location_) return location_;
  fs::path folder = *location_;
  if (const auto made = makePrivateFolder(folder); !made) return std::unexpected(made.error());
  for (const fs::path& name : names) {
    folder /= name;
    if (const auto made = makePrivateFolder(folder); !made) return std::unexpected(made.error());
  }
  return folder;
}

}  // namespace lanternfold
