// Programs that are started with one end of a socket pair.
//
// Made by: the host's composition, for the widget extension.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Platform/ChildProgram.h"
#include "Platform/DiagnosticLog.h"
#include "Platform/Dispatch.h"
#include "PlatformLinux/System/SpawnedProcess.h"

namespace lanternfold {

class EventLoop;
class RunningPrograms;

/// The program has the socket under a descriptor that "--service-fd N" tells it. Its end is noticed
/// by the event loop; no signal is handled.
class SocketChildProgramLauncher final : public ChildProgramLauncher {
 public:
  /// The log of what a program says that starts now; null when that goes where this program's own
  /// goes. Main queue. The log outlives `loop`.
  using OutputOfNext = std::function<DiagnosticLog*()>;

  /// `program` is a path; `arguments` stand before those that this adds. `loop` and `mainQueue`
  /// outlive the launcher.
  SocketChildProgramLauncher(
      std::filesystem::path program, std::vector<std::string> arguments, EventLoop& loop,
      DispatchQueue& mainQueue, OutputOfNext outputOfNext = [] { return nullptr; });
  /// Every program that it has started has been destroyed before. Waits for those that have not
  /// ended yet, which takes a little more than two seconds at the most.
  ~SocketChildProgramLauncher() override;
  SocketChildProgramLauncher(const SocketChildProgramLauncher&) = delete;
  SocketChildProgramLauncher& operator=(const SocketChildProgramLauncher&) = delete;

  [[nodiscard]] std::expected<std::unique_ptr<ChildProgram>, std::error_code> launch() override;

 private:
  [[nodiscard]] std::expected<SpawnedProcess, std::error_code> startOn(int socket) const;

  std::filesystem::path program_;
  std::vector<std::string> arguments_;
  EventLoop& loop_;
  DispatchQueue& mainQueue_;
  OutputOfNext outputOfNext_;
  std::shared_ptr<RunningPrograms> running_;
};

}  // namespace lanternfold
