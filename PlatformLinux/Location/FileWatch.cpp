#include "PlatformLinux/Location/FileWatch.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <deque>
#include <string_view>
#include <sys/inotify.h>
#include <unistd.h>
#include <utility>

#include <asio/io_context.hpp>
#include <asio/posix/stream_descriptor.hpp>

#include "PlatformLinux/System/FileAccess.h"

namespace lanternfold {
namespace {

namespace fs = std::filesystem;

constexpr int mostLinks = 40;  // as many as the kernel follows
/// Whatever changes which file a name leads to, who may read it, or what stands in it.
constexpr std::uint32_t watchedEvents =
    IN_CREATE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_ATTRIB | IN_CLOSE_WRITE | IN_ONLYDIR;

/// Calls `visit(folder, name)` for every name that the system looks up on its way along an absolute
/// path, links included, to the last one that is there and the one that is missing behind it. A
/// folder is visited before the name in it is looked at: whatever happens later is reported.
template <typename Visit>
void followPath(const fs::path& path, Visit visit) {
  fs::path folder = path.root_path();
  const fs::path names = path.relative_path();
  std::deque<fs::path> ahead(names.begin(), names.end());
  int links = 0;
  while (!ahead.empty()) {
    const fs::path name = ahead.front();
    ahead.pop_front();
    if (name.empty() || name == ".") continue;
    if (name == "..") {
      folder = folder.parent_path();
      continue;
    }
    visit(folder, name.native());
    std::error_code error;
    const auto status = fs::symlink_status(folder / name, error);
    if (fs::is_directory(status)) {
      folder /= name;
      continue;
    }
    if (!fs::is_symlink(status) || ++links > mostLinks) return;
    const fs::path target = fs::read_symlink(folder / name, error);
    if (error) return;
    if (target.is_absolute()) folder = target.root_path();
    const fs::path inserted = target.relative_path();
    ahead.insert(ahead.begin(), inserted.begin(), inserted.end());
  }
}

/// Calls `take(event, name)` for every report in what one read gave; what is cut short is left.
template <typename Take>
void decodeReports(std::string_view bytes, Take take) {
  inotify_event event{};
  while (bytes.size() >= sizeof event) {
    std::memcpy(&event, bytes.data(), sizeof event);
    bytes.remove_prefix(sizeof event);
    if (event.len > bytes.size()) return;
    const std::string_view padded = bytes.substr(0, event.len);
    take(event, padded.substr(0, padded.find('\0')));
    bytes.remove_prefix(event.len);
  }
}

}  // namespace

struct FileWatch::Descriptor {
  explicit Descriptor(asio::io_context& context) : readable(context) {}
  asio::posix::stream_descriptor readable;
};

FileWatch::FileWatch(EventLoop& loop, fs::path path, Handler mayHaveChanged)
    : loop_(loop), path_(std::move(path)), mayHaveChanged_(std::move(mayHaveChanged)) {}

FileWatch::~FileWatch() = default;

std::error_code FileWatch::begin() {
  const int inotify = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  if (inotify < 0) return codeOf(errno);
  descriptor_ = std::make_unique<Descriptor>(loop_.context());
  asio::error_code error;
  static_cast<void>(descriptor_->readable.assign(inotify, error));
  if (error) {
    ::close(inotify);
    descriptor_.reset();
    return codeOf(error.value());
  }
  follow();
  waitForReports();
  return {};
}

void FileWatch::end() {
  descriptor_.reset();
  mayHaveChanged_ = nullptr;
}

/// Watches the folders where the path leads now, and no longer those that it has left.
void FileWatch::follow() {
  WatchedNames watched;
  followPath(path_, [&](const fs::path& folder, const std::string& name) {
    watch(folder, name, watched);
  });
  for (const auto& [number, names] : watched_) {
    // One that the kernel has dropped, with its folder, is an error that means nothing.
    if (!watched.contains(number)) {
      (void)::inotify_rm_watch(descriptor_->readable.native_handle(), number);
    }
  }
  watched_ = std::move(watched);
}

void FileWatch::watch(const fs::path& folder, const std::string& name, WatchedNames& watched) {
  const int number =
      ::inotify_add_watch(descriptor_->readable.native_handle(), folder.c_str(), watchedEvents);
  if (number >= 0) watched[number].insert(name);
}

void FileWatch::waitForReports() {
  if (!descriptor_) return;
  descriptor_->readable.async_wait(asio::posix::stream_descriptor::wait_read,
                                   [living = shared_from_this()](const asio::error_code& error) {
                                     if (!error) living->takeReports();
                                   });
}

void FileWatch::takeReports() {
  if (!descriptor_) return;
  if (drain()) {
    follow();
    mayHaveChanged_();
  }
  waitForReports();
}

/// Whether one of the reports that have come is of a name on the path. What is left is taken next.
bool FileWatch::drain() {
  constexpr std::size_t roomForReports = 16 * std::size_t{1024};
  constexpr int mostReadsAtOnce = 16;  // others wait for the loop too
  alignas(inotify_event) std::array<char, roomForReports> buffer{};
  bool isNews = false;
  for (int reads = 0; reads < mostReadsAtOnce; ++reads) {
    const ssize_t count = uninterrupted([&] {
      return ::read(descriptor_->readable.native_handle(), buffer.data(), buffer.size());
    });
    if (count <= 0) break;
    decodeReports({buffer.data(), static_cast<std::size_t>(count)},
                  [&](const inotify_event& event, std::string_view name) {
                    const auto folder = watched_.find(event.wd);
                    isNews = isNews || (event.mask & (IN_Q_OVERFLOW | IN_UNMOUNT)) != 0 ||
                             (folder != watched_.end() && folder->second.contains(name));
                  });
  }
  return isNews;
}

}  // namespace lanternfold
