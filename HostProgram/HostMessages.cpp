#include "HostProgram/HostMessages.h"

#include <expected>
#include <string>
#include <utility>

#include "PlatformLinux/Defaults/PrivateFolder.h"
#include "Support/FileRemedy.h"

namespace lanternfold {
namespace {

constexpr const char* chooser = "XDG_STATE_HOME";
constexpr std::size_t longestBytes = std::size_t{1024} * 1024;
constexpr unsigned betweenLooksSeconds = 60;

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

HostMessages::HostMessages(bool isInBackground, DiagnosticLog& log) {
  if (!isInBackground) return;
  auto file = openFile();
  if (file) {
    file_ = *std::move(file);
  } else {
    log.line("what the widgets have to complain of later will be lost: " + file.error());
  }
}

std::optional<int> HostMessages::descriptor() const {
  return file_ ? std::optional(file_->descriptor()) : std::nullopt;
}

void HostMessages::begin() {
  if (!file_) return;
  file_->beginAnew();
  trimming_ = Glib::signal_timeout().connect_seconds(
      [this] {
        file_->keepWithin(longestBytes);
        return true;
      },
      betweenLooksSeconds);
}

}  // namespace lanternfold
