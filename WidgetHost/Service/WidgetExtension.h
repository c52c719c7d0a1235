// The widget extension as the host's desk sees it: questions, and their answers later.
//
// Production side: `ExtensionClient`, which starts the program and supervises it. Fake:
// `FakeWidgetExtension`.
#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <string>
#include <vector>

#include "WidgetService/Timeline.h"
#include "WidgetService/Widget.h"

namespace lanternfold {

/// Why a question has no answer.
enum class ExtensionFailure {
  timedOut,   ///< half a minute has passed
  gone,       ///< the extension could not be started, crashed, left, or said what makes no sense
  refused,    ///< it answered with an error, or with what is no answer to the question; or too
              ///< many questions wait already
  tooOften,   ///< it has failed so often that it is not started any more until `tryAgain`
  cancelled,  ///< the question was taken back
};

/// Everything on the main queue. Each completion is called exactly once, never inside a call of
/// this, and by nothing that has been destroyed.
class WidgetExtension {
 public:
  template <typename Answer>
  using Completion = std::move_only_function<void(std::expected<Answer, ExtensionFailure>)>;

  enum class SampleKind { placeholder, snapshot };

  /// Names a question; 0 is none.
  using Question = std::uint64_t;

  virtual ~WidgetExtension() = default;

  virtual Question list(Completion<std::vector<WidgetDescription>> completion) = 0;
  virtual Question sample(SampleKind sample, const std::string& kind, const WidgetRequest& request,
                          Completion<ViewEntry> completion) = 0;
  virtual Question timeline(const std::string& kind, const WidgetRequest& request,
                            Completion<Timeline<ViewEntry>> completion) = 0;
  /// Answered when the intent has been performed.
  virtual Question perform(const std::string& intent, Completion<void> completion) = 0;

  /// Its completion is called with `cancelled`; of no effect once it was called.
  virtual void cancel(Question question) = 0;

  /// Tells an extension that runs, and every later one, what the user has decided on Wi-Fi names: a
  /// raw value of the authorization, -1 to 4.
  virtual void tellLocationStatus(std::int32_t status) = 0;
  /// `request` is called when the extension wants the user asked for consent.
  virtual void setLocationRequestHandler(std::function<void(bool whenInUse)> request) = 0;

  /// Whether it has failed so often that it is left alone.
  [[nodiscard]] virtual bool hasFailedTooOften() const = 0;
  /// Called whenever `hasFailedTooOften` changes.
  virtual void setFailedTooOftenHandler(std::function<void()> changed) = 0;
  /// Lets it be started again, at once.
  virtual void tryAgain() = 0;
};

}  // namespace lanternfold
