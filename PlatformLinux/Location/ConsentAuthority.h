// Who must be asked for consent where the user's word to this program is not enough: in a sandbox.
//
// Linux side: `PortalLocationConsent`. Read by: the `location` commands.
#pragma once

#include <functional>
#include <optional>

#include "PlatformLinux/Location/ConsentRecord.h"
#include "PlatformLinux/Location/PortalRules.h"

namespace lanternfold {

class ConsentAuthority {
 public:
  struct Answer {
    PortalOutcome outcome = PortalOutcome::failed;
    std::optional<ConsentRecordError> notRecorded;  ///< of a decision that does not count for that
  };
  using AnswerHandler = std::function<void(const Answer&)>;

  virtual ~ConsentAuthority() = default;

  /// Asks, whatever is known, and records a decision. Any thread; returns at once. `handler` is
  /// called once, on the main queue, within `longestPortalAnswer`.
  virtual void ask(AnswerHandler handler) = 0;
};

}  // namespace lanternfold
