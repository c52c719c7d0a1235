// The widget extension, started when there is something to ask and supervised while it runs.
//
// Made by: the host's composition. Read by: the desk.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/ChildProgram.h"
#include "Platform/Clock.h"
#include "Platform/DiagnosticLog.h"
#include "Platform/Dispatch.h"
#include "Platform/Timer.h"
#include "WidgetHost/Service/ExtensionConversation.h"
#include "WidgetHost/Service/ExtensionQuestion.h"
#include "WidgetHost/Service/RestartPolicy.h"
#include "WidgetHost/Service/WidgetExtension.h"

namespace lanternfold {

/// The first question starts the extension; half a minute after the last one its socket is closed,
/// upon which it leaves. One that crashes, cannot be started, breaks the rules or leaves questions
/// unanswered has failed: what was asked fails, and `RestartPolicy` says when it is started for
/// further questions, which wait for that. Each failure is a line in the log, unless the line
/// before was the same. Main queue.
class ExtensionClient final : public WidgetExtension {
 public:
  /// For an answer, counted from when the question was sent; and for another question.
  static constexpr std::chrono::seconds patience{30};
  /// For an extension to end that has closed its socket.
  static constexpr std::chrono::seconds farewell{2};
  /// What is asked beyond is refused.
  static constexpr std::size_t mostQuestions = 256;
  /// What an extension may say between two answers without being asked.
  static constexpr std::size_t mostUnasked = 1024;

  struct Surroundings {
    ChildProgramLauncher& launcher;
    DispatchQueue& mainQueue;
    const Clock& clock;
    DiagnosticLog& log;
  };

  /// Everything in `surroundings` outlives the client. Starts nothing.
  explicit ExtensionClient(const Surroundings& surroundings);
  /// Closes the socket; no completion and no handler is called any more.
  ~ExtensionClient() override;
  ExtensionClient(const ExtensionClient&) = delete;
  ExtensionClient& operator=(const ExtensionClient&) = delete;

  Question list(Completion<std::vector<WidgetDescription>> completion) override;
  Question sample(SampleKind sample, const std::string& kind, const WidgetRequest& request,
                  Completion<ViewEntry> completion) override;
  Question timeline(const std::string& kind, const WidgetRequest& request,
                    Completion<Timeline<ViewEntry>> completion) override;
  Question perform(const std::string& intent, Completion<void> completion) override;
  void cancel(Question question) override;

  void tellLocationStatus(std::int32_t status) override;
  void setLocationRequestHandler(std::function<void(bool whenInUse)> request) override;
  [[nodiscard]] bool hasFailedTooOften() const override;
  void setFailedTooOftenHandler(std::function<void()> changed) override;
  void tryAgain() override;

 private:
  using TimePoint = std::chrono::steady_clock::time_point;
  struct Asked {
    std::unique_ptr<ExtensionQuestion> question;
    TimePoint sent;  ///< meaningless while there is no conversation
  };
  using AskedQuestions = std::map<Question, Asked>;

  // Questions
  Question ask(std::unique_ptr<ExtensionQuestion> question);
  void send(Question number, Asked& asked);
  /// The line that asks it, now.
  [[nodiscard]] std::string takeDown(Question number, Asked& asked);
  void finishSoon(Question number, std::unique_ptr<ExtensionQuestion> question);
  void failSoon(AskedQuestions::node_type asked, ExtensionFailure failure);
  void complete(Question number);

  // The extension's life
  void startWhenDue();
  void start();
  void begin(std::unique_ptr<ChildProgram> program);
  void discardConversation();
  void failed(const std::string& notice);
  void ended(ChildEnd end);
  void note(const std::string& notice);
  void changeRestarts(const std::function<void(RestartPolicy&)>& change);

  // What it says
  void handle(const ReceivedAnswer& answer);
  void handle(const ReceivedRefusal& refusal);
  void handle(const ConsentNotification& notification);
  void handle(const UnknownExtensionMessage& message);
  void handle(const ExtensionNonsense& nonsense);
  [[nodiscard]] AskedQuestions::node_type takeAsked(const RequestIdentifier& id);
  void countUnasked();

  // Time
  void wake();
  void giveUpOldQuestions();
  void endFarewell();
  void leaveWhenIdle();
  [[nodiscard]] std::optional<TimePoint> nextDue() const;
  void scheduleWake();
  [[nodiscard]] TimePoint now() const { return surroundings_.clock.steadyNow(); }
  /// Does `work` later, unless this is gone by then.
  void soon(std::move_only_function<void(ExtensionClient&)> work);

  Surroundings surroundings_;
  RestartPolicy restarts_;
  /// All of them sent while there is a conversation, and none without; so the first is the oldest.
  AskedQuestions asked_;
  /// Those whose completions are about to be called.
  std::map<Question, std::unique_ptr<ExtensionQuestion>> finished_;
  Question lastQuestion_ = 0;

  std::unique_ptr<ExtensionConversation> conversation_;
  /// Until nobody can be within one of their functions any more.
  std::vector<std::unique_ptr<ExtensionConversation>> discarded_;
  TimePoint lastSent_;                    ///< of the conversation's questions
  std::optional<TimePoint> silentSince_;  ///< its socket is closed
  std::size_t unasked_ = 0;               ///< what it has said since its last answer

  std::optional<std::int32_t> locationStatus_;
  std::function<void(bool)> locationRequested_;
  std::optional<bool> consentToAskFor_;
  std::function<void()> tooOftenChanged_;
  std::string lastNotice_;

  std::optional<Timer> timer_;
  TimePoint wakesAt_;
  /// Expires with the client: works that come later do nothing.
  std::shared_ptr<ExtensionClient*> self_ = std::make_shared<ExtensionClient*>(this);
};

}  // namespace lanternfold
