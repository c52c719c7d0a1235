// Tells when what a path leads to may have changed: the file, its folder, a link on the way.
//
// Made by: `LinuxLocationConsent`, one for each manager.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <system_error>

#include "PlatformLinux/System/EventLoop.h"

namespace lanternfold {

/// Every operation but the constructor runs on the loop's thread.
///
/// The kernel reports on each folder along the path, as far as the path leads at the moment; with
/// each report of a name on the path the way is followed anew, so that a folder that is made,
/// removed, renamed or linked to later is noticed like the file itself. A folder that this user may
/// not list is passed by.
class FileWatch : public std::enable_shared_from_this<FileWatch> {
 public:
  using Handler = std::function<void()>;

  /// `path` is absolute; `loop` outlives the watch.
  FileWatch(EventLoop& loop, std::filesystem::path path, Handler mayHaveChanged);
  ~FileWatch();
  FileWatch(const FileWatch&) = delete;
  FileWatch& operator=(const FileWatch&) = delete;

  /// Once. From its return on no change is missed; several may be one call. The error says why the
  /// kernel cannot be listened to, in which case no call comes.
  [[nodiscard]] std::error_code begin();
  /// No call comes afterwards; the second call does nothing. The handler goes.
  void end();

 private:
  struct Descriptor;  ///< what hangs on the loop
  /// The names on the path, by the number that the kernel gives each watched folder.
  using WatchedNames = std::map<int, std::set<std::string, std::less<>>>;

  void follow();
  void watch(const std::filesystem::path& folder, const std::string& name, WatchedNames& watched);
  void waitForReports();
  void takeReports();
  [[nodiscard]] bool drain();

  EventLoop& loop_;
  const std::filesystem::path path_;
  Handler mayHaveChanged_;
  std::unique_ptr<Descriptor> descriptor_;
  WatchedNames watched_;
};

}  // namespace lanternfold
