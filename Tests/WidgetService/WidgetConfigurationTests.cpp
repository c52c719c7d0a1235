// How a widget is put together, over a provider whose entries are numbers.
#include <gtest/gtest.h>

#include "ViewTree/Elements.h"
#include "WidgetService/TimelineProvider.h"
#include "WidgetService/WidgetConfiguration.h"

namespace lanternfold {
namespace {

using Date = std::chrono::system_clock::time_point;

struct NumberEntry {
  Date date;
  std::string number;
};

struct NumberIntent {
  bool isShown = false;
  static NumberIntent from(const ConfigurationParameters& parameters) {
    return {parameters.showTimestamp.value_or(false)};
  }
};

constexpr Date noon{std::chrono::hours(12)};

/// Answers when the test says so.
class NumberProvider final : public IntentTimelineProvider<NumberEntry, NumberIntent> {
 public:
  NumberEntry placeholder(TimelineProviderContext context) const override {
    return {noon, context.isPreview ? "preview" : "placeholder"};
  }
  void getSnapshot(const NumberIntent& configuration, TimelineProviderContext context,
                   SnapshotCompletion completion) const override {
    completion({noon, std::string(configuration.isShown ? "shown" : "hidden") +
                          (context.isPreview ? " preview" : " snapshot")});
  }
  void getTimeline(const NumberIntent&, TimelineProviderContext,
                   TimelineCompletion completion) const override {
    waiting.push_back(std::move(completion));
  }

  mutable std::vector<TimelineCompletion> waiting;
};

class StillProvider final : public TimelineProvider<NumberEntry> {
 public:
  NumberEntry placeholder(TimelineProviderContext) const override { return {noon, "still"}; }
  void getSnapshot(TimelineProviderContext, SnapshotCompletion completion) const override {
    completion({noon, "still snapshot"});
  }
  void getTimeline(TimelineProviderContext, TimelineCompletion completion) const override {
    completion({.entries = {{noon, "still timeline"}}, .policy = TimelineReloadPolicy::never});
  }
};

/// The entry's number with what was found out and the family.
EntryViewMaker<NumberEntry> viewSaying(const std::string& prefix) {
  return [prefix](const NumberEntry& entry, WidgetFamily family) {
    return text(prefix + entry.number + (family == WidgetFamily::large ? " large" : ""), {});
  };
}

std::string wordsOf(const ViewEntry& entry) { return accessibleDescription(entry.view, ""); }

const Timeline<NumberEntry> two{.entries = {{noon, "one"}, {noon + std::chrono::hours(1), "two"}},
                                .policy = TimelineReloadPolicy::atEnd};

class WidgetConfigurationTest : public testing::Test {
 protected:
  [[nodiscard]] Widget widget(WidgetContent<NumberEntry> content) const {
    return intentConfiguration("Numbers", "NumberIntent",
                               std::shared_ptr<const NumberProvider>(provider_), std::move(content))
        .configurationDisplayName("A name")
        .description("A description.")
        .supportedFamilies({WidgetFamily::small, WidgetFamily::large});
  }
  void ask(const Widget& widget, const WidgetRequest& request = {}) {
    widget.timeline(request, [this](Timeline<ViewEntry> timeline) {
      timelines_.push_back(std::move(timeline));
    });
  }

  std::shared_ptr<NumberProvider> provider_ = std::make_shared<NumberProvider>();
  std::vector<Timeline<ViewEntry>> timelines_;
};

TEST_F(WidgetConfigurationTest, AnIntentConfigurationDescribesItsWidget) {
  EXPECT_EQ(widget({viewSaying("")}).description,
            (WidgetDescription{.kind = "Numbers",
                               .displayName = "A name",
                               .description = "A description.",
                               .supportedFamilies = {WidgetFamily::small, WidgetFamily::large},
                               .configuration = ConfigurationKind::intentConfiguration,
                               .intent = "NumberIntent"}));
}

TEST_F(WidgetConfigurationTest, APlaceholderAndASnapshotAreDrawnAtOnce) {
  const Widget numbers = widget({viewSaying("")});
  const WidgetRequest request{.family = WidgetFamily::large,
                              .configuration = {.showTimestamp = true, .adapter = {}},
                              .context = {.isPreview = true}};
  EXPECT_EQ(wordsOf(numbers.placeholder(request)), "preview large");
  EXPECT_EQ(numbers.placeholder(request).date, noon);
  std::vector<std::string> snapshots;
  numbers.snapshot(request, [&](const ViewEntry& entry) { snapshots.push_back(wordsOf(entry)); });
  EXPECT_EQ(snapshots, std::vector<std::string>{"shown preview large"});
}

TEST_F(WidgetConfigurationTest, ATimelineKeepsItsDatesAndItsPolicy) {
  ask(widget({viewSaying("")}));
  EXPECT_TRUE(timelines_.empty()) << "the provider has not answered";
  provider_->waiting.at(0)(two);
  ASSERT_EQ(timelines_.size(), 1U);
  ASSERT_EQ(timelines_[0].entries.size(), 2U);
  EXPECT_EQ(timelines_[0].entries[1].date, noon + std::chrono::hours(1));
  EXPECT_EQ(wordsOf(timelines_[0].entries[1]), "two");
  EXPECT_EQ(timelines_[0].policy, TimelineReloadPolicy::atEnd);
}

TEST_F(WidgetConfigurationTest, AProviderThatAnswersTwiceIsHeardOnce) {
  ask(widget({viewSaying("")}));
  provider_->waiting.at(0)(two);
  provider_->waiting.at(0)(two);
  EXPECT_EQ(timelines_.size(), 1U);
}

TEST_F(WidgetConfigurationTest, AProviderThatNeverAnswersIsNeverHeard) {
  {
    const Widget numbers = widget({viewSaying("")});
    ask(numbers);
  }
  provider_->waiting.clear();
  EXPECT_TRUE(timelines_.empty());
}

TEST_F(WidgetConfigurationTest, PreparedContentDrawsWhenBothAreThereWhicheverComesFirst) {
  std::vector<WidgetContent<NumberEntry>::Completion> prepared;
  const Widget numbers =
      widget({.view = viewSaying("plain "),
              .prepareTimeline = [&prepared](const ConfigurationParameters&, auto completion) {
                prepared.push_back(std::move(completion));
              }});
  ask(numbers);
  EXPECT_EQ(prepared.size(), 1U) << "begun beside the provider's work";
  provider_->waiting.at(0)(two);
  EXPECT_TRUE(timelines_.empty()) << "what the views need is not known";
  prepared.at(0)(viewSaying("found "));
  ASSERT_EQ(timelines_.size(), 1U);
  EXPECT_EQ(wordsOf(timelines_[0].entries[0]), "found one");
  ask(numbers);
  prepared.at(1)(viewSaying("earlier "));
  EXPECT_EQ(timelines_.size(), 1U) << "the provider has not answered";
  provider_->waiting.at(1)(two);
  ASSERT_EQ(timelines_.size(), 2U);
  EXPECT_EQ(wordsOf(timelines_[1].entries[0]), "earlier one");
}

TEST_F(WidgetConfigurationTest, PreparationIsForTimelinesOnly) {
  const Widget numbers =
      widget({.view = viewSaying("plain "),
              .prepareTimeline = [](const ConfigurationParameters&, const auto&) { FAIL(); }});
  EXPECT_EQ(wordsOf(numbers.placeholder({})), "plain placeholder");
  numbers.snapshot(
      {}, [](const ViewEntry& entry) { EXPECT_EQ(wordsOf(entry), "plain hidden snapshot"); });
}

TEST_F(WidgetConfigurationTest, PreparationKnowsTheConfiguration) {
  std::vector<ConfigurationParameters> seen;
  const ConfigurationParameters parameters{.showTimestamp = true,
                                           .adapter = AdapterParameter{"en0", "Port"}};
  ask(widget({.view = viewSaying(""),
              .prepareTimeline = [&seen](const ConfigurationParameters& given,
                                         const auto&) { seen.push_back(given); }}),
      {.family = WidgetFamily::small, .configuration = parameters, .context = {}});
  EXPECT_EQ(seen, std::vector{parameters});
}

TEST_F(WidgetConfigurationTest, AStaticConfigurationHasNoIntent) {
  const Widget still = staticConfiguration("Still", std::make_shared<const StillProvider>(),
                                           WidgetContent<NumberEntry>{viewSaying("")})
                           .configurationDisplayName("A name")
                           .description("A description.")
                           .supportedFamilies({WidgetFamily::small});
  EXPECT_EQ(still.description,
            (WidgetDescription{.kind = "Still",
                               .displayName = "A name",
                               .description = "A description.",
                               .supportedFamilies = {WidgetFamily::small},
                               .configuration = ConfigurationKind::staticConfiguration,
                               .intent = std::nullopt}));
  EXPECT_EQ(wordsOf(still.placeholder({})), "still");
  still.snapshot({}, [](const ViewEntry& entry) { EXPECT_EQ(wordsOf(entry), "still snapshot"); });
  ask(still);
  ASSERT_EQ(timelines_.size(), 1U);
  EXPECT_EQ(timelines_[0].policy, TimelineReloadPolicy::never);
  EXPECT_EQ(wordsOf(timelines_[0].entries[0]), "still timeline");
}

using WidgetConfigurationDeathTest = WidgetConfigurationTest;

TEST_F(WidgetConfigurationDeathTest, NeedsAViewOfItsEntries) {
  EXPECT_DEATH((void)widget({}), "without a view of its entries");
}

TEST_F(WidgetConfigurationDeathTest, NeedsAProvider) {
  EXPECT_DEATH((void)staticConfiguration("Still", std::shared_ptr<const StillProvider>(),
                                         WidgetContent<NumberEntry>{viewSaying("")}),
               "without a provider of its entries");
  EXPECT_DEATH(
      (void)intentConfiguration("Numbers", "NumberIntent", std::shared_ptr<const NumberProvider>(),
                                WidgetContent<NumberEntry>{viewSaying("")}),
      "without a provider of its entries");
}

}  // namespace
}  // namespace lanternfold
