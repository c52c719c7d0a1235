// Asks an X server whether it is there before the toolkit does, whose library waits without end.
//
// Made by: HostProgram.cpp, once.
#pragma once

#include <chrono>
#include <string>

#include "HostProgram/Display/DisplayChoice.h"
#include "PlatformLinux/System/FileDescriptor.h"

namespace lanternfold {

/// Keeps the connection to the last server that has answered, until `letGo`: some servers end with
/// the last of their clients, which this may be. Main thread.
class XServerSurvey {
 public:
  /// A server has `limit` to take the connection, and again to answer.
  explicit XServerSurvey(std::chrono::seconds limit = std::chrono::seconds(3)) : limit_(limit) {}

  /// `display` as in DISPLAY. One that is started by whoever connects has the limit for that. One
  /// on another machine is not asked, and counts as usable; so does one that answers with a
  /// refusal, since nothing is shown to it by which it knows its user.
  [[nodiscard]] XServer ask(const std::string& display);

  /// For when the toolkit has a connection of its own.
  void letGo() { connection_ = FileDescriptor(-1); }

 private:
  [[nodiscard]] XServer askAt(const std::string& address);

  const std::chrono::seconds limit_;
  FileDescriptor connection_{-1};
};

}  // namespace lanternfold
