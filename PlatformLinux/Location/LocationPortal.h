// Whoever decides on the location inside a sandbox: the portal, and the store of its decisions.
//
// Made by: the composition (`BusLocationPortal`) and the tests. Read by: `PortalLocationConsent`.
#pragma once

#include <functional>

#include "PlatformLinux/Location/PortalRules.h"

namespace lanternfold {

/// Any thread. Nothing happens before the first call of `knowledge` or `ask`.
class LocationPortal {
 public:
  using AnswerHandler = std::function<void(PortalOutcome)>;
  using ChangeHandler = std::function<void()>;

  /// No handler is called afterwards; a question that is open is taken back. Waits for a handler
  /// that is running; not to be destroyed by one.
  virtual ~LocationPortal() = default;

  /// For changes of the knowledge; before everything else, once. Called on the portal's thread.
  virtual void setChangeHandler(ChangeHandler handler) = 0;

  /// What is known at this moment. The first call waits until something is, for some seconds at
  /// the most, and is told `silent` then; on the portal's own thread nobody waits.
  [[nodiscard]] virtual PortalKnowledge knowledge() = 0;

  /// Asks the user, unless he has decided before. `handler` is called once, on the portal's thread,
  /// within `longestPortalAnswer`.
  virtual void ask(AnswerHandler handler) = 0;
};

}  // namespace lanternfold
