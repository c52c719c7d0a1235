// What a gallery asks the extension, in which order, and what it need not ask.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "HostProgram/Gallery/PreviewQuestions.h"
#include "Tests/Support/FakeWidgetExtension.h"
#include "Tests/Support/SimulatedDispatch.h"
#include "ViewTree/PlainText.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PreviewQuestionsTest : public testing::Test {
 protected:
  PreviewQuestionsTest() {
    extension_.setWidgets({{.kind = "A", .supportedFamilies = {WidgetFamily::small}},
                           {.kind = "B", .supportedFamilies = {WidgetFamily::small}}});
    extension_.setSilent(true);
  }

  void ask(const std::string& kind) {
    questions_->ask(kind, WidgetFamily::small, [this, kind](const ViewEntry& entry) {
      shown_.push_back(kind + ": " + plainTextRows(entry.view, "").at(0).at(0));
    });
  }
  void answer() {
    extension_.answerAll();
    settle();
  }
  void settle() { dispatch_.advance(std::chrono::seconds(1)); }

  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  FakeWidgetExtension extension_{dispatch_.mainQueue(), clock_};
  std::optional<ViewEntry> onDesktop_;
  std::vector<std::string> shown_;
  std::unique_ptr<PreviewQuestions> questions_ =
      std::make_unique<PreviewQuestions>(extension_, [this](const std::string& kind, WidgetFamily) {
        return kind == "A" ? onDesktop_ : std::nullopt;
      });
};

TEST_F(PreviewQuestionsTest, TimelinesAreAskedForOneAfterTheOther) {
  ask("A");
  ask("B");
  EXPECT_THAT(extension_.takeAsked(),
              ElementsAre("snapshot A small", "timeline A small", "snapshot B small"));
  answer();
  EXPECT_THAT(extension_.takeAsked(), ElementsAre("timeline B small"));
  answer();
  EXPECT_THAT(extension_.takeAsked(), IsEmpty());
  EXPECT_THAT(shown_, ElementsAre("A: snapshot A", "A: A", "B: snapshot B", "B: B"));
}

TEST_F(PreviewQuestionsTest, AFailureKeepsTheSampleAndGoesOn) {
  ask("A");
  answer();
  extension_.setFailure(ExtensionFailure::timedOut);
  ask("B");
  settle();
  extension_.setFailure(std::nullopt);
  ask("A");
  answer();
  EXPECT_THAT(shown_, ElementsAre("A: snapshot A", "A: A", "A: snapshot A", "A: A"));
}

TEST_F(PreviewQuestionsTest, WhatStandsOnTheDesktopIsNotAskedFor) {
  onDesktop_ = ViewEntry{.date = clock_.now(), .view = text("seen", {})};
  ask("A");
  EXPECT_THAT(extension_.takeAsked(), IsEmpty());
  EXPECT_THAT(shown_, ElementsAre("A: seen"));
}

TEST_F(PreviewQuestionsTest, WhatGoesWithItsGalleryShowsNothingAnyMore) {
  ask("A");
  ask("B");
  questions_.reset();
  answer();
  EXPECT_THAT(shown_, IsEmpty());
  EXPECT_THAT(extension_.waiting(), IsEmpty());
}

Card upToDateCard(const Clock& clock) {
  return {.placed = {.id = "1", .kind = "A", .family = WidgetFamily::small},
          .view = text("seen", {}),
          .date = clock.now()};
}

TEST_F(PreviewQuestionsTest, ACardOfTheSameKindAndSizeIsAPreview) {
  const Card card = upToDateCard(clock_);
  EXPECT_EQ(previewOnDesktop({card}, "A", WidgetFamily::small),
            (ViewEntry{.date = clock_.now(), .view = text("seen", {})}));
  EXPECT_EQ(previewOnDesktop({card}, "A", WidgetFamily::medium), std::nullopt);
  EXPECT_EQ(previewOnDesktop({card}, "B", WidgetFamily::small), std::nullopt);
  EXPECT_EQ(previewOnDesktop({}, "A", WidgetFamily::small), std::nullopt);
}

TEST_F(PreviewQuestionsTest, ACardOfOnesOwnChoiceOrOfOldNewsIsNone) {
  Card chosen = upToDateCard(clock_);
  chosen.placed.configuration.showTimestamp = true;
  Card empty = upToDateCard(clock_);
  empty.date = std::nullopt;
  Card sample = upToDateCard(clock_);
  sample.isSample = true;
  Card stale = upToDateCard(clock_);
  stale.isStale = true;
  EXPECT_EQ(previewOnDesktop({chosen, empty, sample, stale}, "A", WidgetFamily::small),
            std::nullopt);
}

}  // namespace
}  // namespace lanternfold
