// The seam to what the system says of the user's session: whether it is locked, and when the
// machine has woken up.
//
// Linux side: `LogindSession`. Fake: `FakeLoginSession`.
#pragma once

#include <functional>

namespace lanternfold {

/// Everything on the main queue.
class LoginSession {
 public:
  struct Handlers {
    std::function<void(bool isLocked)> lockChanged;
    /// The machine has been suspended and runs again.
    std::function<void()> resumed;
  };

  virtual ~LoginSession() = default;

  /// Once. The handlers are called on the main queue, never inside the call, until this is
  /// destroyed; a session that is locked already is told of as a change. A system that says nothing
  /// is one that never locks.
  virtual void start(Handlers handlers) = 0;
};

}  // namespace lanternfold
