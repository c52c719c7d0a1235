#include "WidgetHost/Service/ExtensionClient.h"

#include <algorithm>
#include <system_error>
#include <utility>
#include <variant>

#include "Support/FatalError.h"
#include "WidgetService/HostLines.h"
#include "WidgetService/ReceivedResult.h"

namespace lanternfold {
namespace {

EntryCall::Kind entryOf(WidgetExtension::SampleKind sample) {
  return sample == WidgetExtension::SampleKind::placeholder ? EntryCall::Kind::placeholder
                                                            : EntryCall::Kind::snapshot;
}

RequestIdentifier identifierOf(WidgetExtension::Question question) {
  return static_cast<std::int64_t>(question);
}

const char* remedyFor(const std::error_code& startFailure) {
  const bool isOfFile = startFailure == std::errc::no_such_file_or_directory ||
                        startFailure == std::errc::permission_denied;
  return isOfFile ? "install it beside the host again"
                  : "check that the limits on processes, open files and memory leave room for it";
}

std::string noticeOf(const ChildEnd& end) {
  if (end.signal != 0) {
    return "the widget extension was ended by signal " + std::to_string(end.signal);
  }
  if (end.exitStatus == 0) return "the widget extension has left questions unanswered";
  return "the widget extension has ended with status " +
         std::to_string(end.exitStatus.value_or(-1));
}

}  // namespace

ExtensionClient::ExtensionClient(const Surroundings& surroundings) : surroundings_(surroundings) {}

ExtensionClient::~ExtensionClient() = default;

// Questions

WidgetExtension::Question ExtensionClient::list(
    Completion<std::vector<WidgetDescription>> completion) {
  return ask(std::make_unique<TypedQuestion<std::vector<WidgetDescription>>>(
      ListCall{}, receivedWidgets, std::move(completion)));
}

WidgetExtension::Question ExtensionClient::sample(SampleKind sample, const std::string& kind,
                                                  const WidgetRequest& request,
                                                  Completion<ViewEntry> completion) {
  return ask(std::make_unique<TypedQuestion<ViewEntry>>(
      EntryCall{.entry = entryOf(sample), .kind = kind, .request = request}, receivedEntry,
      std::move(completion)));
}

WidgetExtension::Question ExtensionClient::timeline(const std::string& kind,
                                                    const WidgetRequest& request,
                                                    Completion<Timeline<ViewEntry>> completion) {
  return ask(std::make_unique<TypedQuestion<Timeline<ViewEntry>>>(
      EntryCall{.entry = EntryCall::Kind::timeline, .kind = kind, .request = request},
      receivedTimeline, std::move(completion)));
}

WidgetExtension::Question ExtensionClient::perform(const std::string& intent,
                                                   Completion<void> completion) {
  return ask(std::make_unique<TypedQuestion<void>>(PerformIntentCall{intent}, receivedNothing,
                                                   std::move(completion)));
}

WidgetExtension::Question ExtensionClient::ask(std::unique_ptr<ExtensionQuestion> question) {
  const Question number = ++lastQuestion_;
  if (restarts_.hasFailedTooOften() || asked_.size() == mostQuestions) {
    question->fail(restarts_.hasFailedTooOften() ? ExtensionFailure::tooOften
                                                 : ExtensionFailure::refused);
    finishSoon(number, std::move(question));
    return number;
  }
  Asked& asked = asked_.emplace(number, Asked{std::move(question), {}}).first->second;
  if (conversation_) {
    send(number, asked);
  } else {
    startWhenDue();
  }
  scheduleWake();
  return number;
}

void ExtensionClient::send(Question number, Asked& asked) {
  conversation_->say(takeDown(number, asked));
}

std::string ExtensionClient::takeDown(Question number, Asked& asked) {
  asked.sent = lastSent_ = now();
  return requestLine({.id = identifierOf(number), .call = asked.question->call()}) + '\n';
}

void ExtensionClient::cancel(Question question) {
  if (auto asked = asked_.extract(question)) {
    failSoon(std::move(asked), ExtensionFailure::cancelled);
    if (conversation_) conversation_->say(cancelLine({identifierOf(question)}) + '\n');
    return;
  }
  const auto finished = finished_.find(question);
  if (finished != finished_.end()) finished->second->fail(ExtensionFailure::cancelled);
}

void ExtensionClient::failSoon(AskedQuestions::node_type asked, ExtensionFailure failure) {
  asked.mapped().question->fail(failure);
  finishSoon(asked.key(), std::move(asked.mapped().question));
}

void ExtensionClient::finishSoon(Question number, std::unique_ptr<ExtensionQuestion> question) {
  finished_.emplace(number, std::move(question));
  soon([number](ExtensionClient& self) { self.complete(number); });
}

void ExtensionClient::complete(Question number) {
  const auto finished = finished_.extract(number);
  finished.mapped()->complete();
}

// The extension's life

void ExtensionClient::startWhenDue() {
  if (!conversation_ && !asked_.empty() && restarts_.nextStart() <= now()) start();
}

void ExtensionClient::start() {
  auto program = surroundings_.launcher.launch();
  if (program) return begin(*std::move(program));
  failed("the widget extension could not be started: " + program.error().message() + "; " +
         remedyFor(program.error()));
}

void ExtensionClient::begin(std::unique_ptr<ChildProgram> program) {
  conversation_ = std::make_unique<ExtensionConversation>(
      std::move(program), ExtensionConversation::Listener{
                              .said =
                                  [this](const ExtensionMessage& message) {
                                    std::visit([this](const auto& said) { handle(said); }, message);
                                  },
                              .brokeRules =
                                  [this](const std::string& fault) {
                                    failed("the widget extension broke the rules: " + fault);
                                  },
                              .fellSilent =
                                  [this] {
                                    silentSince_ = now();
                                    scheduleWake();
                                  },
                              .ended = [this](ChildEnd end) { ended(end); }});
  unasked_ = 0;
  std::string lines;
  if (locationStatus_) lines = locationChangedLine({*locationStatus_}) + '\n';
  for (auto& [number, asked] : asked_) lines += takeDown(number, asked);
  conversation_->say(std::move(lines));
}

/// It may be within one of its functions, so its end comes later.
void ExtensionClient::discardConversation() {
  if (!conversation_) return;
  conversation_->ignore();
  discarded_.push_back(std::move(conversation_));
  silentSince_.reset();
  soon([](ExtensionClient& self) { self.discarded_.clear(); });
}

void ExtensionClient::failed(const std::string& notice) {
  note(notice);
  if (conversation_) conversation_->kill();
  discardConversation();
  changeRestarts([this](RestartPolicy& restarts) { restarts.failed(now()); });
  const bool isTooOften = restarts_.hasFailedTooOften();
  if (isTooOften) {
    note(
        "the widget extension has failed too often and is left alone; press \"Try again\" on a "
        "widget to have it started");
  }
  while (!asked_.empty()) {
    failSoon(asked_.extract(asked_.begin()),
             isTooOften ? ExtensionFailure::tooOften : ExtensionFailure::gone);
  }
}

void ExtensionClient::ended(ChildEnd end) {
  if (end.exitStatus == 0 && asked_.empty()) return discardConversation();
  failed(noticeOf(end));
}

void ExtensionClient::note(const std::string& notice) {
  if (notice == lastNotice_) return;
  lastNotice_ = notice;
  surroundings_.log.line(notice);
}

void ExtensionClient::changeRestarts(const std::function<void(RestartPolicy&)>& change) {
  const bool before = restarts_.hasFailedTooOften();
  change(restarts_);
  if (before == restarts_.hasFailedTooOften()) return;
  soon([](ExtensionClient& self) {
    const auto changed = self.tooOftenChanged_;
    if (changed) changed();
  });
}

bool ExtensionClient::hasFailedTooOften() const { return restarts_.hasFailedTooOften(); }

void ExtensionClient::setFailedTooOftenHandler(std::function<void()> changed) {
  tooOftenChanged_ = std::move(changed);
}

void ExtensionClient::tryAgain() {
  changeRestarts([](RestartPolicy& restarts) { restarts.forgive(); });
  startWhenDue();
  scheduleWake();
}

// What it says

void ExtensionClient::handle(const ReceivedAnswer& answer) {
  auto asked = takeAsked(answer.id);
  if (!asked) return countUnasked();
  auto& question = asked.mapped().question;
  if (const auto fault = question->answer(answer.result)) {
    note("the widget extension has given an answer that makes no sense: " + *fault);
  } else if (question->isTimeline()) {
    restarts_.succeeded();
    lastNotice_.clear();
  }
  finishSoon(asked.key(), std::move(question));
}

void ExtensionClient::handle(const ReceivedRefusal& refusal) {
  auto asked = takeAsked(refusal.id);
  if (!asked) return countUnasked();
  note("the widget extension has refused a question: " + refusal.message);
  failSoon(std::move(asked), ExtensionFailure::refused);
}

void ExtensionClient::handle(const ConsentNotification& notification) {
  countUnasked();
  if (std::exchange(consentToAskFor_, notification.whenInUse)) return;
  soon([](ExtensionClient& self) {
    const auto whenInUse = std::exchange(self.consentToAskFor_, std::nullopt);
    const auto requested = self.locationRequested_;
    if (requested) requested(*whenInUse);
  });
}

void ExtensionClient::handle(const UnknownExtensionMessage& /*message*/) { countUnasked(); }

void ExtensionClient::handle(const ExtensionNonsense& /*nonsense*/) {
  fatalError("a conversation has handed on what makes no sense");
}

/// Empty when nobody waits for that answer: it was given up or never asked for.
ExtensionClient::AskedQuestions::node_type ExtensionClient::takeAsked(const RequestIdentifier& id) {
  const auto* const number = std::get_if<std::int64_t>(&id);
  auto asked = number == nullptr || *number < 0 ? AskedQuestions::node_type()
                                                : asked_.extract(static_cast<Question>(*number));
  if (asked) unasked_ = 0;
  return asked;
}

void ExtensionClient::countUnasked() {
  if (++unasked_ > mostUnasked) failed("the widget extension talks without being asked");
}

void ExtensionClient::tellLocationStatus(std::int32_t status) {
  locationStatus_ = status;
  if (conversation_) conversation_->say(locationChangedLine({status}) + '\n');
}

void ExtensionClient::setLocationRequestHandler(std::function<void(bool whenInUse)> request) {
  locationRequested_ = std::move(request);
}

// Time

void ExtensionClient::wake() {
  giveUpOldQuestions();
  endFarewell();
  leaveWhenIdle();
  startWhenDue();
  scheduleWake();
}

void ExtensionClient::giveUpOldQuestions() {
  while (conversation_ && !asked_.empty() && asked_.begin()->second.sent + patience <= now()) {
    const Question number = asked_.begin()->first;
    failSoon(asked_.extract(number), ExtensionFailure::timedOut);
    conversation_->say(cancelLine({identifierOf(number)}) + '\n');
  }
}

void ExtensionClient::endFarewell() {
  if (!silentSince_ || now() < *silentSince_ + farewell) return;
  failed("the widget extension has closed its socket and does not end");
}

void ExtensionClient::leaveWhenIdle() {
  if (conversation_ && asked_.empty() && lastSent_ + patience <= now()) discardConversation();
}

std::optional<ExtensionClient::TimePoint> ExtensionClient::nextDue() const {
  if (!conversation_ && asked_.empty()) return std::nullopt;
  if (!conversation_) return std::max(restarts_.nextStart(), now());
  TimePoint due = (asked_.empty() ? lastSent_ : asked_.begin()->second.sent) + patience;
  if (silentSince_) due = std::min(due, *silentSince_ + farewell);
  return due;
}

/// A timer that fires too early sets the next one.
void ExtensionClient::scheduleWake() {
  const auto due = nextDue();
  if (!due || (timer_ && wakesAt_ <= *due)) return;
  wakesAt_ = *due;
  timer_.emplace(surroundings_.mainQueue, *due - now(), [this] {
    timer_.reset();
    wake();
  });
}

void ExtensionClient::soon(std::move_only_function<void(ExtensionClient&)> work) {
  surroundings_.mainQueue.async([living = std::weak_ptr(self_), work = std::move(work)]() mutable {
    if (const auto self = living.lock()) work(**self);
  });
}

}  // namespace lanternfold
