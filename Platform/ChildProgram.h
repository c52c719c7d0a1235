// The seam to a program that this one starts and talks to over a socket of its own.
//
// Linux side: `SocketChildProgramLauncher`. Fake: `FakeChildPrograms`. Both pass the same contract
// tests.
#pragma once

#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <system_error>

#include "Platform/ByteStream.h"

namespace lanternfold {

/// How a program came to its end.
struct ChildEnd {
  std::optional<int> exitStatus;  ///< 0 to 255; none when a signal ended it
  int signal = 0;                 ///< 0 unless a signal ended it
  friend bool operator==(const ChildEnd&, const ChildEnd&) = default;
};

/// A program that runs, or has run. Everything on the main queue. Destroying it closes the socket
/// and ends a program that has not ended by itself two seconds later; nobody waits for that.
class ChildProgram {
 public:
  virtual ~ChildProgram() = default;

  /// The socket that it was started with. Lives as long as this.
  [[nodiscard]] virtual ByteStream& stream() = 0;

  /// `ended` is called once, on the main queue and never inside a call, when the program has ended;
  /// what it said before that has been received by then. Once.
  virtual void setEndHandler(std::function<void(ChildEnd)> ended) = 0;

  /// Ends it at once, whatever it does. Of no effect after its end.
  virtual void kill() = 0;
};

/// Starts one certain program, with the arguments that it was made with.
class ChildProgramLauncher {
 public:
  virtual ~ChildProgramLauncher() = default;

  /// Main queue; does not wait for the program. The error is the system's, such as
  /// no_such_file_or_directory.
  [[nodiscard]] virtual std::expected<std::unique_ptr<ChildProgram>, std::error_code> launch() = 0;
};

}  // namespace lanternfold
