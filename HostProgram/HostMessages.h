// Where the messages of a host go that has no terminal of its own.
//
// Made by: `runHostProgram`, once.
#pragma once

#include <cstdio>
#include <memory>
#include <optional>

#include "Platform/DiagnosticLog.h"
#include "PlatformLinux/System/FileDescriptor.h"
#include "PlatformLinux/System/LogFile.h"
#include "PlatformLinux/System/StreamDiagnosticLog.h"

namespace lanternfold {

/// The file "host.log" in the user's folder of states, for the host and for the extension; of a
/// megabyte at the most, which is looked at whenever one of them says something. Programs that
/// links have started have no share in it. Main thread.
class HostMessages {
 public:
  /// A host that was started in the background has such a file, and another one none. Where it
  /// cannot be had a line of `log` says why, and the messages are lost: the terminal is not kept.
  /// `log` is the host's own, and outlives this.
  HostMessages(bool isInBackground, StreamDiagnosticLog& log);
  ~HostMessages() = default;
  HostMessages(const HostMessages&) = delete;
  HostMessages& operator=(const HostMessages&) = delete;

  /// Open as long as this; none when this program's own streams are as good.
  [[nodiscard]] std::optional<int> descriptor() const;

  /// This host is the only one: what the last one has said is forgotten.
  void begin();

  /// Takes what a program says that is started now, on any thread; null when this program's own
  /// streams are as good. Lives as long as this.
  [[nodiscard]] DiagnosticLog* ofNextProgram();

 private:
  class File;
  struct CloseStream {
    void operator()(std::FILE* stream) const { (void)std::fclose(stream); }
  };

  StreamDiagnosticLog& log_;
  std::shared_ptr<File> file_;            ///< null when there is none
  std::optional<FileDescriptor> nobody_;  ///< in the place of the file
  std::unique_ptr<std::FILE, CloseStream> stream_;
  std::optional<StreamDiagnosticLog> programs_;
};

}  // namespace lanternfold
