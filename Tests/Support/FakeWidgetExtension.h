// An extension in memory: knows widgets, draws each as its kind, and does what a test tells it.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <expected>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Clock.h"
#include "Platform/Dispatch.h"
#include "ViewTree/Elements.h"
#include "WidgetHost/Service/WidgetExtension.h"
#include "WidgetService/WidgetFamilyName.h"

namespace lanternfold {

/// Answers each question by a work of its own, unless it is told to be silent. A widget that it
/// does not know, or not in that family, it refuses.
class FakeWidgetExtension final : public WidgetExtension {
 public:
  using DrawnTimeline =
      std::function<Timeline<ViewEntry>(const std::string&, const WidgetRequest&)>;

  /// `queue` and `clock` outlive it.
  FakeWidgetExtension(DispatchQueue& queue, const Clock& clock) : queue_(queue), clock_(clock) {}

  // The test.

  void setWidgets(std::vector<WidgetDescription> widgets) { widgets_ = std::move(widgets); }

  /// What it says from now on of every timeline; an empty function brings back its own: one entry,
  /// dated now, that shows the kind, to be asked for anew at its end.
  void setTimeline(DrawnTimeline draw) { draw_ = std::move(draw); }

  /// Silent, it lets questions wait, which `answerAll` or its speaking again answers.
  void setSilent(bool silent) {
    isSilent_ = silent;
    if (!silent) answerAll();
  }
  void answerAll() {
    for (const Question question : waiting()) answerSoon(question);
  }
  /// Every question from now on fails so; none brings back its answers.
  void setFailure(std::optional<ExtensionFailure> failure) { failure_ = failure; }
  /// All that wait fail so, as they do in a crash.
  void failAll(ExtensionFailure failure) {
    for (const Question question : waiting()) completeSoon(question, failure);
  }
  /// It is not asked any more until `tryAgain`; what waits fails.
  void failTooOften() {
    failAll(ExtensionFailure::tooOften);
    setTooOften(true);
  }
  void requestLocation(bool whenInUse) {
    queue_.async([this, living = std::weak_ptr(alive_), whenInUse] {
      if (!living.expired() && locationRequested_) locationRequested_(whenInUse);
    });
  }

  /// The questions that wait for their answers, in their order.
  [[nodiscard]] std::vector<Question> waiting() const {
    std::vector<Question> questions;
    for (const auto& [question, asked] : waiting_) questions.push_back(question);
    return questions;
  }
  /// All that it was asked since the last call, such as "list", "placeholder KIND small", "timeline
  /// KIND large" and "perform INTENT".
  [[nodiscard]] std::vector<std::string> takeAsked() { return std::exchange(asked_, {}); }
  /// The last request for an entry of that kind; none when there was none.
  [[nodiscard]] std::optional<WidgetRequest> lastRequest(const std::string& kind) const {
    const auto found = requests_.find(kind);
    return found == requests_.end() ? std::nullopt : std::optional(found->second);
  }
  [[nodiscard]] const std::vector<std::int32_t>& toldStatuses() const { return toldStatuses_; }
  [[nodiscard]] int tries() const { return tries_; }

  // The host.

  Question list(Completion<std::vector<WidgetDescription>> completion) override {
    return ask("list", std::move(completion), [this] {
      return std::expected<std::vector<WidgetDescription>, ExtensionFailure>(widgets_);
    });
  }
  Question sample(SampleKind sample, const std::string& kind, const WidgetRequest& request,
                  Completion<ViewEntry> completion) override {
    const std::string name = sample == SampleKind::placeholder ? "placeholder" : "snapshot";
    return askEntry<ViewEntry>(name, kind, request, std::move(completion),
                               [this, name, kind] { return entryOf(name + " " + kind); });
  }
  Question timeline(const std::string& kind, const WidgetRequest& request,
                    Completion<Timeline<ViewEntry>> completion) override {
    return askEntry<Timeline<ViewEntry>>(
        "timeline", kind, request, std::move(completion), [this, kind, request] {
          if (draw_) return draw_(kind, request);
          return Timeline<ViewEntry>{.entries = {entryOf(kind)},
                                     .policy = TimelineReloadPolicy::atEnd};
        });
  }
  Question perform(const std::string& intent, Completion<void> completion) override {
    return ask("perform " + intent, std::move(completion),
               [] { return std::expected<void, ExtensionFailure>(); });
  }

  void cancel(Question question) override {
    completeSoon(question, ExtensionFailure::cancelled);
    const auto finished = finishing_.find(question);
    if (finished != finishing_.end()) finished->second.second = ExtensionFailure::cancelled;
  }
  void tellLocationStatus(std::int32_t status) override { toldStatuses_.push_back(status); }
  void setLocationRequestHandler(std::function<void(bool whenInUse)> request) override {
    locationRequested_ = std::move(request);
  }
  [[nodiscard]] bool hasFailedTooOften() const override { return hasFailedTooOften_; }
  void setFailedTooOftenHandler(std::function<void()> changed) override {
    tooOftenChanged_ = std::move(changed);
  }
  void tryAgain() override {
    ++tries_;
    setTooOften(false);
  }

 private:
  /// Completes with the answer that there is then, or with the failure.
  using Waiting = std::move_only_function<void(std::optional<ExtensionFailure>)>;

  template <typename Answer, typename Answering>
  Question ask(std::string name, Completion<Answer> completion, Answering answering) {
    asked_.push_back(std::move(name));
    const Question question = ++lastQuestion_;
    waiting_.emplace(question, [completion = std::move(completion),
                                answering = std::move(answering)](auto failure) mutable {
      if (failure) return completion(std::unexpected(*failure));
      completion(answering());
    });
    const auto failure = hasFailedTooOften_ ? ExtensionFailure::tooOften : failure_;
    if (failure) {
      completeSoon(question, *failure);
    } else if (!isSilent_) {
      answerSoon(question);
    }
    return question;
  }

  template <typename Answer, typename Drawing>
  Question askEntry(const std::string& name, const std::string& kind, const WidgetRequest& request,
                    Completion<Answer> completion, Drawing drawing) {
    requests_[kind] = request;
    const std::string family(widgetFamilyName(request.family));
    return ask(name + " " + kind + " " + family, std::move(completion),
               [this, kind, request,
                drawing = std::move(drawing)]() -> std::expected<Answer, ExtensionFailure> {
                 if (!knows(kind, request.family)) {
                   return std::unexpected(ExtensionFailure::refused);
                 }
                 return drawing();
               });
  }

  void answerSoon(Question question) { finishSoon(question, std::nullopt); }
  /// It waits no more, whatever comes meanwhile.
  void completeSoon(Question question, ExtensionFailure failure) { finishSoon(question, failure); }
  void finishSoon(Question question, std::optional<ExtensionFailure> failure) {
    auto waiting = waiting_.extract(question);
    if (waiting.empty()) return;
    finishing_.emplace(question, std::pair(std::move(waiting.mapped()), failure));
    queue_.async([this, living = std::weak_ptr(alive_), question] {
      if (!living.expired()) finish(question);
    });
  }
  void finish(Question question) {
    auto finished = finishing_.extract(question);
    auto& [completion, failure] = finished.mapped();
    completion(failure);
  }

  void setTooOften(bool tooOften) {
    if (std::exchange(hasFailedTooOften_, tooOften) == tooOften) return;
    queue_.async([this, living = std::weak_ptr(alive_)] {
      if (!living.expired() && tooOftenChanged_) tooOftenChanged_();
    });
  }

  [[nodiscard]] bool knows(const std::string& kind, WidgetFamily family) const {
    const auto widget = std::ranges::find(widgets_, kind, &WidgetDescription::kind);
    return widget != widgets_.end() &&
           std::ranges::find(widget->supportedFamilies, family) != widget->supportedFamilies.end();
  }
  [[nodiscard]] ViewEntry entryOf(const std::string& shown) const {
    return {.date = clock_.now(), .view = text(shown, {})};
  }

  DispatchQueue& queue_;
  const Clock& clock_;
  std::vector<WidgetDescription> widgets_;
  DrawnTimeline draw_;
  std::optional<ExtensionFailure> failure_;
  bool isSilent_ = false;
  bool hasFailedTooOften_ = false;
  int tries_ = 0;
  Question lastQuestion_ = 0;
  std::map<Question, Waiting> waiting_;
  std::map<Question, std::pair<Waiting, std::optional<ExtensionFailure>>> finishing_;
  std::vector<std::string> asked_;
  std::map<std::string, WidgetRequest> requests_;
  std::vector<std::int32_t> toldStatuses_;
  std::function<void(bool)> locationRequested_;
  std::function<void()> tooOftenChanged_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace lanternfold
