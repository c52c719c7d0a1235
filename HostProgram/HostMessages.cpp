#include "HostProgram/HostMessages.h"

#include <expected>
#include <fcntl.h>
#include <mutex>
#include <string>
#include <utility>

#include "PlatformLinux/Defaults/PrivateFolder.h"
#include "Support/FileRemedy.h"

namespace lanternfold {
namespace {

constexpr const char* chooser = "XDG_STATE_HOME";
constexpr std::size_t longestBytes = std::size_t{1024} * 1024;

/// The error is a sentence for the user, without its full stop.
std::expected<LogFile, std::string> openFile() {
  const auto states = usersFolder(chooser, ".local/state");
  if (!states) {
    return std::unexpected("this user has no home folder; set HOME or XDG_STATE_HOME");
  }
  const std::filesystem::path folder = *states / productFolder;
  if (const auto made = makePrivateFolder(folder, chooser); !made) {
    return std::unexpected(made.error());
  }
  const std::filesystem::path file = folder / "host.log";
  auto opened = LogFile::open(file);
  if (!opened) return std::unexpected(cannotWrite(file, opened.error()));
  return *std::move(opened);
}

}  // namespace

/// Trimmed by whoever has written to it, on whichever thread.
class HostMessages::File {
 public:
  explicit File(LogFile file) : file_(std::move(file)) {}

  [[nodiscard]] int descriptor() const { return file_.descriptor(); }
  void beginAnew() { file_.beginAnew(); }
  void keepWithin() {
    const std::scoped_lock guard(mutex_);
    file_.keepWithin(longestBytes);
  }

 private:
  LogFile file_;
  std::mutex mutex_;
};

HostMessages::HostMessages(bool isInBackground, StreamDiagnosticLog& log) : log_(log) {
  if (!isInBackground) return;
  auto file = openFile();
  if (file) {
    file_ = std::make_shared<File>(*std::move(file));
  } else {
    log.line("what the widgets have to complain of later will be lost: " + file.error());
    nobody_.emplace(::open("/dev/null", O_WRONLY | O_CLOEXEC));
  }
  const auto messages = descriptor();
  if (!messages) return;
  stream_.reset(::fdopen(::fcntl(*messages, F_DUPFD_CLOEXEC, 3), "a"));
  if (stream_) programs_.emplace(stream_.get());
}

std::optional<int> HostMessages::descriptor() const {
  if (file_) return file_->descriptor();
  return nobody_ && nobody_->isOpen() ? std::optional(nobody_->get()) : std::nullopt;
}

void HostMessages::begin() {
  if (!file_) return;
  file_->beginAnew();
  const auto trim = [file = file_] { file->keepWithin(); };
  log_.setAfterLine(trim);
  if (programs_) programs_->setAfterLine(trim);
}

DiagnosticLog* HostMessages::ofNextProgram() {
  // Libraries of the host write to the file itself.
  if (file_) file_->keepWithin();
  return programs_ ? &*programs_ : nullptr;
}

}  // namespace lanternfold
