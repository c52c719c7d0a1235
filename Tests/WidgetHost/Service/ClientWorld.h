// A client of an extension that a test plays, over virtual time.
#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Tests/Support/FakeChildPrograms.h"
#include "Tests/Support/RecordingDiagnosticLog.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"
#include "ViewTree/Elements.h"
#include "WidgetHost/Service/ExtensionClient.h"
#include "WidgetService/ServiceAnswer.h"
#include "WidgetService/ServiceMessage.h"

namespace lanternfold {

/// The widget that an extension of these tests knows.
inline const WidgetDescription lamp{.kind = "Lamp",
                                    .displayName = "A lamp",
                                    .description = "Shines.",
                                    .supportedFamilies = {WidgetFamily::small},
                                    .configuration = ConfigurationKind::staticConfiguration,
                                    .intent = std::nullopt};

/// What an extension of these tests answers.
class LampAnswers {
 public:
  static std::string lineOf(const ServiceRequest& request) {
    return answerLine(request.id, std::visit(LampAnswers(), request.call));
  }
  using Result = std::expected<std::string, ServiceError>;
  Result operator()(const ListCall& /*call*/) const { return widgetListResult({lamp}); }
  Result operator()(const EntryCall& call) const {
    if (call.request.family != WidgetFamily::small) {
      return std::unexpected(ServiceError{ServiceErrorCode::invalidParams, "no such size"});
    }
    const ViewEntry entry{.date = std::chrono::sys_days(std::chrono::year(2024) / 1 / 1),
                          .view = text(call.kind, {})};
    if (call.entry != EntryCall::Kind::timeline) return entryResult(entry);
    return timelineResult({.entries = {entry}, .policy = TimelineReloadPolicy::atEnd});
  }
  Result operator()(const PerformIntentCall& /*call*/) const { return emptyResult(); }
};

/// What the extension was told, such as "timeline 3", "cancel 3", "location 2".
class ToldText {
 public:
  static std::string of(const std::string& line) {
    return std::visit(ToldText(), parseHostMessage(line));
  }
  std::string operator()(const ServiceRequest& request) const {
    return std::visit(ToldText(), request.call) + " " + idText(request.id);
  }
  std::string operator()(const ListCall& /*call*/) const { return "list"; }
  std::string operator()(const EntryCall& call) const {
    switch (call.entry) {
      case EntryCall::Kind::placeholder:
        return "placeholder";
      case EntryCall::Kind::snapshot:
        return "snapshot";
      case EntryCall::Kind::timeline:
        return "timeline";
    }
    return "";
  }
  std::string operator()(const PerformIntentCall& call) const { return "perform " + call.intent; }
  std::string operator()(const CancelNotification& cancel) const {
    return "cancel " + idText(cancel.id);
  }
  std::string operator()(const LocationNotification& location) const {
    return "location " + std::to_string(location.status);
  }
  std::string operator()(const IgnoredNotification& /*message*/) const { return "ignored"; }
  std::string operator()(const RefusedMessage& message) const { return message.error.message; }

 private:
  static std::string idText(const RequestIdentifier& id) {
    const auto* const number = std::get_if<std::int64_t>(&id);
    return number == nullptr ? "other" : std::to_string(*number);
  }
};

class ClientWorld {
 public:
  using Question = WidgetExtension::Question;

  explicit ClientWorld(std::uint64_t seed = 1) : dispatch(clock, seed) {}

  /// Asks for the lamp's timeline; what becomes of it is an outcome of that number.
  Question ask(WidgetFamily family = WidgetFamily::small) {
    const auto number = std::make_shared<Question>(0);
    *number = client->timeline("Lamp", {.family = family}, heard<Timeline<ViewEntry>>(number));
    return *number;
  }
  template <typename Answer>
  WidgetExtension::Completion<Answer> heard(std::shared_ptr<Question> number) {
    return [this, number](const std::expected<Answer, ExtensionFailure>& answer) {
      outcomes[*number].push_back(answer ? "answered" : nameOf(answer.error()));
    };
  }
  static std::string nameOf(ExtensionFailure failure) {
    switch (failure) {
      case ExtensionFailure::timedOut:
        return "timed out";
      case ExtensionFailure::gone:
        return "gone";
      case ExtensionFailure::refused:
        return "refused";
      case ExtensionFailure::tooOften:
        return "too often";
      case ExtensionFailure::cancelled:
        return "cancelled";
    }
    return "";
  }
  /// What became of a question; "waits" before that.
  std::string outcomeOf(Question question) {
    const auto& all = outcomes[question];
    if (all.size() > 1) return "completed more than once";
    return all.empty() ? "waits" : all.front();
  }

  std::vector<std::string> told() {
    std::vector<std::string> told;
    for (const std::string& line : programs.takeLines()) told.push_back(ToldText::of(line));
    return told;
  }
  /// Answers whatever it was told, in the order of the asking; the number of answers.
  int answerAll() {
    int answers = 0;
    for (const std::string& line : programs.takeLines()) {
      const HostMessage message = parseHostMessage(line);
      if (const auto* const request = std::get_if<ServiceRequest>(&message)) {
        programs.say(LampAnswers::lineOf(*request));
        ++answers;
      }
    }
    return answers;
  }
  void answerAllAndRun() {
    dispatch.runReady();
    answerAll();
    dispatch.runReady();
  }
  void crash() {
    programs.end({.exitStatus = std::nullopt, .signal = 11});
    dispatch.runReady();
  }

  SimulatedClock clock;
  SimulatedDispatch dispatch;
  FakeChildPrograms programs{dispatch.mainQueue()};
  RecordingDiagnosticLog log;
  std::map<Question, std::vector<std::string>> outcomes;
  std::optional<ExtensionClient> client{
      ExtensionClient::Surroundings{programs, dispatch.mainQueue(), clock, log}};
};

}  // namespace lanternfold
