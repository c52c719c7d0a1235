// An extension that answers late, wrongly or not at all, as a draw decides, and that knows what a
// host may not do.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Platform/Clock.h"
#include "Platform/Dispatch.h"
#include "ViewTree/Elements.h"
#include "WidgetHost/Service/WidgetExtension.h"

namespace lanternfold {

/// Every widget on the desktop is of a kind of its own, by which this knows it. One thread.
class CapriciousExtension final : public WidgetExtension {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;
  /// How likely each failure is.
  struct Outcomes {
    double timedOut = 0;
    double gone = 0;
    double refused = 0;
  };
  /// What it has gone through with one widget.
  struct Record {
    int waiting = 0;
    int misses = 0;  ///< in a row, up to two
    int answers = 0;
    TimePoint lastAsked;
  };

  CapriciousExtension(DispatchQueue& queue, const Clock& clock, std::mt19937_64& random)
      : queue_(queue), clock_(clock), random_(random) {}

  // The test.

  void setWidgets(std::vector<WidgetDescription> widgets) { widgets_ = std::move(widgets); }
  void setOutcomes(const Outcomes& outcomes) { outcomes_ = outcomes; }
  void setLocked(bool isLocked) { isLocked_ = isLocked; }
  void forget(const std::string& kind) { records_.erase(kind); }
  [[nodiscard]] const Record& record(const std::string& kind) { return records_[kind]; }
  [[nodiscard]] std::size_t questions() const { return lastQuestion_; }

  void crash() {
    while (!waiting_.empty()) finish(waiting_.begin()->first, ExtensionFailure::gone);
  }
  void failTooOften() {
    while (!waiting_.empty()) finish(waiting_.begin()->first, ExtensionFailure::tooOften);
    setTooOften(true);
  }
  /// The host before is gone with all that it waits for.
  void forgetHost() {
    waiting_.clear();
    records_.clear();
    changed_ = nullptr;
  }

  // The host.

  Question list(Completion<std::vector<WidgetDescription>> completion) override {
    return ask<std::vector<WidgetDescription>>({}, std::move(completion),
                                               [this] { return widgets_; });
  }
  Question sample(SampleKind, const std::string& kind, const WidgetRequest&,
                  Completion<ViewEntry> completion) override {
    return ask<ViewEntry>({.kind = kind, .isSample = true}, std::move(completion), [this, kind] {
      return ViewEntry{.date = clock_.now(), .view = text("sample " + kind, {})};
    });
  }
  Question timeline(const std::string& kind, const WidgetRequest&,
                    Completion<Timeline<ViewEntry>> completion) override {
    return ask<Timeline<ViewEntry>>({.kind = kind, .isSample = false}, std::move(completion),
                                    [this, kind] { return drawnTimeline(kind); });
  }
  Question perform(const std::string&, Completion<void> completion) override {
    queue_.async([completion = std::move(completion)]() mutable { completion({}); });
    return ++lastQuestion_;
  }
  void cancel(Question question) override { finish(question, ExtensionFailure::cancelled); }
  void tellLocationStatus(std::int32_t) override {}
  void setLocationRequestHandler(std::function<void(bool)>) override {}
  [[nodiscard]] bool hasFailedTooOften() const override { return hasFailedTooOften_; }
  void setFailedTooOftenHandler(std::function<void()> changed) override {
    changed_ = std::move(changed);
  }
  void tryAgain() override { setTooOften(false); }

 private:
  struct About {
    std::string kind;  ///< empty for the catalogue
    bool isSample = false;
  };
  struct Waiting {
    About about;
    std::move_only_function<void(std::optional<ExtensionFailure>)> complete;
  };

  template <typename Answer, typename Answering>
  Question ask(const About& about, Completion<Answer> completion, const Answering& answering) {
    EXPECT_FALSE(isLocked_) << "asked for \"" << about.kind << "\" while the session is locked";
    EXPECT_FALSE(hasToldTooOften_) << "asked while it is left alone";
    Record& record = records_[about.kind];
    EXPECT_EQ(record.waiting, 0) << "\"" << about.kind << "\" was asked for twice at the same time";
    ++record.waiting;
    record.lastAsked = clock_.steadyNow();
    const Question question = ++lastQuestion_;
    waiting_.emplace(question, Waiting{about, [completion = std::move(completion), answering](
                                                  std::optional<ExtensionFailure> failure) mutable {
                                         if (failure) return completion(std::unexpected(*failure));
                                         completion(answering());
                                       }});
    decide(question);
    return question;
  }

  /// What becomes of a question, and when.
  void decide(Question question) {
    const auto failure = drawnFailure();
    const std::chrono::nanoseconds delay = failure == ExtensionFailure::timedOut
                                               ? std::chrono::seconds(30)
                                               : std::chrono::milliseconds(random_() % 3000);
    queue_.after(delay, [this, question, failure] { finish(question, failure); });
  }
  std::optional<ExtensionFailure> drawnFailure() {
    if (hasFailedTooOften_) return ExtensionFailure::tooOften;
    const double drawn = std::uniform_real_distribution<double>()(random_);
    const double late = outcomes_.timedOut;
    const double gone = late + outcomes_.gone;
    if (drawn < late) return ExtensionFailure::timedOut;
    if (drawn < gone) return ExtensionFailure::gone;
    if (drawn < gone + outcomes_.refused) return ExtensionFailure::refused;
    return std::nullopt;
  }

  void finish(Question question, std::optional<ExtensionFailure> failure) {
    auto waiting = waiting_.extract(question);
    if (waiting.empty()) return;
    queue_.async([this, failure, waiting = std::move(waiting.mapped())]() mutable {
      Record& record = records_[waiting.about.kind];
      if (record.waiting > 0) --record.waiting;
      note(record, waiting.about, failure);
      waiting.complete(failure);
    });
  }

  static void note(Record& record, const About& about, std::optional<ExtensionFailure> failure) {
    if (failure == ExtensionFailure::cancelled) return;
    if (!failure) {
      if (about.isSample) return;
      record.misses = 0;
      ++record.answers;
    } else if (!about.isSample || failure != ExtensionFailure::refused) {
      record.misses = std::min(record.misses + 1, 2);
    }
  }

  void setTooOften(bool tooOften) {
    if (std::exchange(hasFailedTooOften_, tooOften) == tooOften) return;
    if (!tooOften) hasToldTooOften_ = false;
    queue_.async([this] {
      hasToldTooOften_ = hasFailedTooOften_;
      if (changed_) changed_();
    });
  }

  /// Those of kinds that end in "!" are never to be asked for again.
  Timeline<ViewEntry> drawnTimeline(const std::string& kind) {
    Timeline<ViewEntry> timeline;
    timeline.policy =
        kind.ends_with('!') ? TimelineReloadPolicy::never : TimelineReloadPolicy::atEnd;
    for (auto count = random_() % 3; count > 0; --count) {
      const auto offset = std::chrono::seconds(static_cast<int>(random_() % 400) - 200);
      timeline.entries.push_back({.date = clock_.now() + offset, .view = text(kind, {})});
    }
    return timeline;
  }

  DispatchQueue& queue_;
  const Clock& clock_;
  std::mt19937_64& random_;
  Outcomes outcomes_;
  std::vector<WidgetDescription> widgets_;
  bool isLocked_ = false;
  bool hasFailedTooOften_ = false;
  bool hasToldTooOften_ = false;
  Question lastQuestion_ = 0;
  std::map<Question, Waiting> waiting_;
  std::map<std::string, Record> records_;
  std::function<void()> changed_;
};

}  // namespace lanternfold
