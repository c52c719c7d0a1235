// Where the messages of a host go that has no terminal of its own.
//
// Made by: `runHostProgram`, once.
#pragma once

#include <glibmm/main.h>
#include <optional>

#include "Platform/DiagnosticLog.h"
#include "PlatformLinux/System/LogFile.h"

namespace lanternfold {

/// The file "host.log" in the user's folder of states, for the host and for whatever it starts; of
/// about a megabyte at the most. Main thread.
class HostMessages {
 public:
  /// A host that was started in the background has such a file, and another one none. Where it
  /// cannot be had a line of `log` says why, and the messages are lost.
  HostMessages(bool isInBackground, DiagnosticLog& log);
  ~HostMessages() { trimming_.disconnect(); }
  HostMessages(const HostMessages&) = delete;
  HostMessages& operator=(const HostMessages&) = delete;

  /// Open as long as this; none without a file.
  [[nodiscard]] std::optional<int> descriptor() const;

  /// This host is the only one: what the last one has said is forgotten.
  void begin();

 private:
  std::optional<LogFile> file_;
  sigc::connection trimming_;
};

}  // namespace lanternfold
