#include <chrono>

#include <gtest/gtest.h>

#include "ViewTree/Elements.h"
#include "WidgetService/ExtensionMessage.h"
#include "WidgetService/ReceivedResult.h"
#include "WidgetService/ServiceAnswer.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

constexpr auto newYear2024 = std::chrono::sys_days(std::chrono::year(2024) / 1 / 1);

const WidgetDescription panoramic{
    .kind = "PanoramicNetworkStateWidget",
    .displayName = "Panoramic",
    .description = "Panoramic \"widget\".",
    .supportedFamilies = {WidgetFamily::small, WidgetFamily::medium, WidgetFamily::large},
    .configuration = ConfigurationKind::intentConfiguration,
    .intent = "ConfigurationIntent"};
const WidgetDescription bandwidth{.kind = "BandwidthMonitorWidget",
                                  .displayName = "Bandwidth Monitor",
                                  .description = "",
                                  .supportedFamilies = {WidgetFamily::small},
                                  .configuration = ConfigurationKind::staticConfiguration,
                                  .intent = std::nullopt};

/// What comes out of the line that a result is sent in.
ArchiveValue received(const std::string& result) {
  ExtensionMessage message = parseExtensionMessage(answerLine(std::int64_t{7}, result));
  return std::get<ReceivedAnswer>(std::move(message)).result;
}

template <typename Value>
std::string faultOf(const std::expected<Value, std::string>& value) {
  return value ? "no fault" : value.error();
}

ViewEntry entryOf(const std::string& shown, std::chrono::milliseconds after) {
  return {
      .date = newYear2024 + after,
      .view = vstack(HorizontalAlignment::leading, 4, {text(shown, {}), drawingTime("%@", {})})};
}

// What was written is read back

TEST(ReceivedWidgets, AreThoseThatWereWritten) {
  EXPECT_EQ(receivedWidgets(received(widgetListResult({panoramic, bandwidth}))),
            (std::vector{panoramic, bandwidth}));
  EXPECT_EQ(receivedWidgets(received(widgetListResult({}))), std::vector<WidgetDescription>());
}

TEST(ReceivedEntry, IsTheOneThatWasWritten) {
  const ViewEntry entry = entryOf("en0", 13h + 120ms);
  EXPECT_EQ(receivedEntry(received(entryResult(entry))), entry);
}

TEST(ReceivedTimeline, IsTheOneThatWasWritten) {
  const Timeline<ViewEntry> timeline{.entries = {entryOf("later", 2s), entryOf("first", 1s)},
                                     .policy = TimelineReloadPolicy::atEnd};
  EXPECT_EQ(receivedTimeline(received(timelineResult(timeline))), timeline);
  const Timeline<ViewEntry> none{.entries = {}, .policy = TimelineReloadPolicy::never};
  EXPECT_EQ(receivedTimeline(received(timelineResult(none))), none);
}

TEST(ReceivedTimeline, AViewAsDeepAsOneMayBeIsRead) {
  View view = text("deep", {});
  for (std::size_t depth = 1; depth < deepestArchivedNode; ++depth) {
    view = vstack(HorizontalAlignment::leading, 0, {std::move(view)});
  }
  const Timeline<ViewEntry> timeline{.entries = {{.date = newYear2024, .view = view}},
                                     .policy = TimelineReloadPolicy::atEnd};
  EXPECT_EQ(receivedTimeline(received(timelineResult(timeline))), timeline);
}

TEST(ReceivedNothing, IsAnObject) {
  EXPECT_TRUE(receivedNothing(received("{}")));
  EXPECT_TRUE(receivedNothing(received(R"({"later":1})")));
  EXPECT_EQ(faultOf(receivedNothing(received("null"))), "result: It is not an object.");
}

// What is wrong is named

std::string widgetWith(const std::string& member, const std::string& json) {
  std::string widget = "{";
  for (const auto& [name, value] :
       std::vector<std::pair<std::string, std::string>>{{"kind", R"("Lamp")"},
                                                        {"displayName", R"("A lamp")"},
                                                        {"description", R"("Shines.")"},
                                                        {"families", R"(["small"])"},
                                                        {"configuration", R"("static")"},
                                                        {"intent", "null"}}) {
    const std::string& said = name == member ? json : value;
    if (said.empty()) continue;
    if (widget.size() > 1) widget += ',';
    widget += '"' + name + R"(":)" + said;
  }
  return widget + '}';
}

std::expected<std::vector<WidgetDescription>, std::string> listOf(const std::string& widgets) {
  return receivedWidgets(received(R"({"widgets":[)" + widgets + "]}"));
}

TEST(ReceivedWidgets, AreRefusedWithTheMemberThatIsWrong) {
  const auto faultWith = [](const std::string& member, const std::string& json) {
    return faultOf(listOf(widgetWith(member, json)));
  };
  EXPECT_EQ(faultWith("kind", ""), "widgets[0].kind: It is missing.");
  EXPECT_EQ(faultWith("kind", "7"), "widgets[0].kind: It is not a text.");
  EXPECT_EQ(faultWith("kind", R"("")"), "widgets[0].kind: It is not a name.");
  EXPECT_EQ(faultWith("kind", R"("a\nb")"), "widgets[0].kind: It is not a name.");
  EXPECT_EQ(faultWith("kind", '"' + std::string(257, 'k') + '"'),
            "widgets[0].kind: The text is too long.");
  EXPECT_EQ(faultWith("displayName", "null"), "widgets[0].displayName: It is not a text.");
  EXPECT_EQ(faultWith("description", '"' + std::string(1025, 'd') + '"'),
            "widgets[0].description: The text is too long.");
  EXPECT_EQ(faultWith("families", R"("small")"), "widgets[0].families: It is not a list.");
  EXPECT_EQ(faultWith("families", "[7]"), "widgets[0].families[0]: It is not a text.");
  EXPECT_EQ(faultWith("configuration", R"("both")"),
            "widgets[0].configuration: It is neither intent nor static.");
  EXPECT_EQ(faultWith("configuration", R"("intent")"), "widgets[0].intent: It is not a text.");
  EXPECT_EQ(faultOf(receivedWidgets(received("[]"))), "result: It is not an object.");
  EXPECT_EQ(faultOf(receivedWidgets(received("{}"))), "widgets: It is missing.");
  EXPECT_EQ(faultOf(listOf("7")), "widgets[0]: It is not an object.");
}

TEST(ReceivedWidgets, OfTheSameKindAreRefused) {
  const std::string widget = widgetWith("", "");
  EXPECT_EQ(faultOf(listOf(widget + ',' + widget)),
            "widgets[1].kind: There is another widget of this kind.");
}

TEST(ReceivedWidgets, AreNoMoreThanAHostTakes) {
  std::string widgets;
  for (std::size_t number = 0; number < mostReceivedWidgets; ++number) {
    widgets += widgetWith("kind", "\"K" + std::to_string(number) + '"') + ',';
  }
  EXPECT_EQ(listOf(widgets.substr(0, widgets.size() - 1)).value().size(), mostReceivedWidgets);
  EXPECT_EQ(faultOf(listOf(widgets + widgetWith("", ""))), "widgets: It is too long.");
}

TEST(ReceivedWidgets, HaveTheirFamiliesOnceFromTheSmallestAndUnknownOnesArePassedOver) {
  const auto list = listOf(widgetWith("families", R"(["huge","large","small","large"])"));
  EXPECT_EQ(list.value().at(0).supportedFamilies,
            (std::vector{WidgetFamily::small, WidgetFamily::large}));
  EXPECT_EQ(listOf(widgetWith("families", R"(["huge"])")), std::vector<WidgetDescription>());
}

TEST(ReceivedWidgets, HaveTextsThatAreFitToShow) {
  const auto list = listOf(widgetWith("displayName", R"("two\nlines \u202Eturned")"));
  EXPECT_EQ(list.value().at(0).displayName, "two lines turned");
}

TEST(ReceivedEntry, IsRefusedWithTheMemberThatIsWrong) {
  const auto fault = [](const std::string& json) { return faultOf(receivedEntry(received(json))); };
  const std::string date = R"("date":"2024-01-01T00:00:00.000Z")";
  EXPECT_EQ(fault("null"), "result: It is not an object.");
  EXPECT_EQ(fault(R"({"view":{}})"), "date: It is missing.");
  EXPECT_EQ(fault(R"({"date":"yesterday","view":{}})"), "date: It is not a date.");
  EXPECT_EQ(fault("{" + date + "}"), "view: It is missing.");
  EXPECT_EQ(fault("{" + date + R"(,"view":null})"), "the view's archive: It is not an object.");
  EXPECT_EQ(fault("{" + date + R"(,"view":{"version":2}})"), "the view's version: It is not 1.");
}

TEST(ReceivedTimeline, IsRefusedWithTheMemberThatIsWrong) {
  const auto fault = [](const std::string& json) {
    return faultOf(receivedTimeline(received(json)));
  };
  EXPECT_EQ(fault(R"({"entries":[]})"), "policy: It is missing.");
  EXPECT_EQ(fault(R"({"entries":[],"policy":"soon"})"), "policy: It is neither atEnd nor never.");
  EXPECT_EQ(fault(R"({"entries":{},"policy":"never"})"), "entries: It is not a list.");
  EXPECT_EQ(fault(R"({"entries":[{}],"policy":"never"})"), "entries[0].date: It is missing.");
  std::string many(2 * mostReceivedEntries + 1, '0');
  for (std::size_t index = 1; index < many.size(); index += 2) many[index] = ',';
  EXPECT_EQ(fault(R"({"entries":[)" + many + R"(],"policy":"never"})"), "entries: It is too long.");
}

}  // namespace
}  // namespace lanternfold
