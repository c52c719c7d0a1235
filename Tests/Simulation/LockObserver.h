// Watches a lock file through the file operations of the programs that share it, and knows when
// the rules of the lease are broken.
//
// The rules: nobody takes a lock whose last look showed it to be held; the file holds the time at
// which the wait would have ended; nobody waits longer than the time-out, the last pause and what
// the world held it up; nobody gives up over a free lock.
#pragma once

#include <chrono>
#include <cstdint>
#include <expected>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "Platform/FileSystem.h"
#include "Tests/Simulation/Turn.h"

namespace lanternfold::simulation {

class LockObserver {
 public:
  explicit LockObserver(RunContext& run) : run_(run) {}

  // Told by the programs' file systems. An operation on the lock file begins; what a look found (no
  // bytes: no file); how removing, making and writing it ended.
  void began(const Turn& program);
  /// Whether a look at the lock file that begins now belongs to another step than what was seen
  /// before: who holds the lock or has found it free does not
  /// look, and who waits does not after the time-out.
  [[nodiscard]] bool beginsAnotherStep(const Turn& program) const;
  void looked(const Turn& program, const std::expected<FileContents, std::error_code>& found);
  void foundMissing(const Turn& program);
  void removed(const Turn& program, bool succeeded);
  void created(const Turn& program, bool succeeded);
  void written(const Turn& program, std::string_view text, bool succeeded);
  /// The program waits for its next work, or has ended: a step that began is over.
  void restsOrEnded(const Turn& program);

  /// Whether the program took the lock and has neither given it back nor ended its step.
  [[nodiscard]] bool holds(const Turn& program) const;
  /// Whether the program's last try to lock gave up or failed.
  [[nodiscard]] bool isTaking(const Turn& program) const;

 private:
  /// Unclear: the lease ends at this very moment, to the precision of the text.
  enum class Look { held, unclear, free };

  struct State {
    bool isTaking = false;
    bool holds = false;
    bool anOperationFailed = false;
    /// What the last look showed; taking is not allowed after a held one.
    Look lastLook = Look::held;
    std::chrono::system_clock::time_point beganAtWall;
    std::chrono::steady_clock::time_point beganAt;
    std::chrono::nanoseconds heldUpBefore{};
  };

  void checkTaking(const Turn& program, std::string_view what);
  void checkWait(const Turn& program);

  RunContext& run_;
  std::map<std::uint32_t, State> states_;
};

}  // namespace lanternfold::simulation
