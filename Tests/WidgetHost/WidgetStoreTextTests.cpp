#include <fstream>
#include <iterator>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "WidgetHost/Store/WidgetStoreText.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string fixture() {
  std::ifstream stream(LANTERNFOLD_SOURCE_DIR "/Docs/formats/fixtures/widget-store.json");
  return {std::istreambuf_iterator<char>(stream), {}};
}

const PlacedWidget panoramic{.id = "1",
                             .kind = "PanoramicNetworkStateWidget",
                             .family = WidgetFamily::large,
                             .configuration = {.showTimestamp = true, .adapter = {}},
                             .position = {"DP-1", 1532, 64}};
const PlacedWidget adapter{
    .id = "2",
    .kind = "NetworkAdapterWidget",
    .family = WidgetFamily::medium,
    .configuration = {.showTimestamp = false,
                      .adapter = AdapterParameter{.identifier = "en0", .display = "Port (en0)"}},
    .position = {"DP-1", 1532, 470}};
const PlacedWidget bandwidth{.id = "3",
                             .kind = "BandwidthMonitorWidget",
                             .family = WidgetFamily::small,
                             .configuration = {},
                             .position = {"", -40, 0}};

std::vector<PlacedWidget> placed(const StoredWidgets& stored) {
  std::vector<PlacedWidget> widgets;
  for (const StoredWidget& widget : stored.widgets) {
    if (widget.placed) widgets.push_back(*widget.placed);
  }
  return widgets;
}

StoredWidgets read(std::string_view text) {
  auto stored = readWidgetStore(text);
  EXPECT_TRUE(stored) << stored.error();
  return stored.value_or(StoredWidgets{});
}

std::string list(const std::string& widgets) {
  return R"({"version":1,"widgets":[)" + widgets + "]}";
}

TEST(WidgetStoreText, ReadsAndWritesTheFixtureToTheByte) {
  const StoredWidgets stored = read(fixture());
  EXPECT_THAT(placed(stored), ElementsAre(panoramic, adapter, bandwidth));
  EXPECT_THAT(stored.remarks, IsEmpty());
  EXPECT_EQ(widgetStoreText(stored), fixture());

  StoredWidgets fresh;
  for (const PlacedWidget& widget : {panoramic, adapter, bandwidth}) {
    fresh.widgets.push_back({.placed = widget, .original = {}});
  }
  EXPECT_EQ(widgetStoreText(fresh), fixture());
}

TEST(WidgetStoreText, TakesWhatIsMissingForNothingChosen) {
  const StoredWidgets stored = read(list(R"({"id":"a","kind":"K","family":"small"})"));
  EXPECT_THAT(placed(stored), ElementsAre(PlacedWidget{.id = "a", .kind = "K"}));
}

TEST(WidgetStoreText, KeepsMembersThatNobodyKnows) {
  const std::string text = R"({
  "later": {
    "a": [
      1,
      2.5
    ]
  },
  "version": 1,
  "widgets": [
    {
      "colour": "red",
      "id": "a",
      "kind": "K",
      "family": "small",
      "configuration": {
        "theme": 7,
        "adapter": {
          "display": "d",
          "speed": null
        }
      },
      "monitor": "M",
      "x": 1,
      "y": 2
    }
  ],
  "end": true
}
)";
  StoredWidgets stored = read(text);
  EXPECT_EQ(widgetStoreText(stored), text);

  PlacedWidget& widget = *stored.widgets.front().placed;
  widget.position = {"N", 3, 4};
  widget.configuration.showTimestamp = true;
  widget.configuration.adapter->display = "e";
  std::string changed = text;
  const auto replace = [&](const std::string& part, const std::string& with) {
    changed.replace(changed.find(part), part.size(), with);
  };
  replace(R"("monitor": "M")", R"("monitor": "N")");
  replace(R"("x": 1)", R"("x": 3)");
  replace(R"("y": 2)", R"("y": 4)");
  replace(R"("display": "d")", R"("display": "e")");
  replace("null\n        }\n", "null\n        },\n        \"showTimestamp\": true\n");
  EXPECT_EQ(widgetStoreText(stored), changed);
}

TEST(WidgetStoreText, WhatIsNotChosenAnyMoreIsGone) {
  StoredWidgets stored = read(fixture());
  stored.widgets[1].placed->configuration = {};
  EXPECT_THAT(widgetStoreText(stored), Not(HasSubstr("adapter")));
  stored.widgets[1].placed->configuration.adapter =
      AdapterParameter{.identifier = {}, .display = "x"};
  const StoredWidgets again = read(widgetStoreText(stored));
  EXPECT_EQ(again.widgets[1].placed, stored.widgets[1].placed);
}

TEST(WidgetStoreText, WhatIsNotUnderstoodStaysAndIsNotShown) {
  struct Case {
    std::string widget;
    std::string clause;
  };
  for (const auto& [widget, clause] : std::vector<Case>{
           {"7", "it is no object"},
           {R"({"kind":"K","family":"small"})", "\"id\" is missing"},
           {R"({"id":"","kind":"K","family":"small"})", "\"id\" is missing"},
           {R"({"id":"a b","kind":"K","family":"small"})", "visible ASCII"},
           {R"({"id":"a","family":"small"})", "\"kind\" is missing"},
           {R"({"id":"a","kind":"K","family":"huge"})", "\"family\" \"huge\" is none"},
           {R"({"id":"a","kind":"K","family":3})", "\"family\" is no text"},
           {R"({"id":"a","kind":"K","family":"small","x":"1"})", "\"x\" is no number"},
           {R"({"id":"a","kind":"K","family":"small","monitor":1})", "\"monitor\" is no text"},
           {R"({"id":"a","kind":"K","family":"small","configuration":1})", "\"configuration\""},
           {R"({"id":"a","kind":"K","family":"small","configuration":{"showTimestamp":1}})",
            "\"showTimestamp\""},
           {R"({"id":"a","kind":"K","family":"small","configuration":{"adapter":1}})",
            "\"adapter\" is no object"},
           {R"({"id":")" + std::string(65, 'a') + R"(","kind":"K","family":"small"})",
            "\"id\" is too long"}}) {
    const StoredWidgets stored = read(list(widget));
    EXPECT_THAT(placed(stored), IsEmpty()) << widget;
    ASSERT_EQ(stored.remarks.size(), 1U) << widget;
    EXPECT_THAT(stored.remarks.front(), HasSubstr("widget 1 is not shown"));
    EXPECT_THAT(stored.remarks.front(), HasSubstr(clause));
    EXPECT_EQ(read(widgetStoreText(stored)), stored);
  }
}

TEST(WidgetStoreText, PositionsAreBroughtWithinTheBoundsAndStayInTheFile) {
  const std::string text =
      list(R"({"id":"a","kind":"K","family":"small","x":1e300,"y":-123456789012345678901})");
  StoredWidgets stored = read(text);
  EXPECT_EQ(stored.widgets[0].placed->position, (MonitorPosition{"", 100'000, -100'000}));
  EXPECT_THAT(widgetStoreText(stored), HasSubstr("1e+300"));
  stored.widgets[0].placed->position.x = 5;
  EXPECT_EQ(read(widgetStoreText(stored)).widgets[0].placed->position,
            (MonitorPosition{"", 5, -100'000}));
}

TEST(WidgetStoreText, OfTwoWidgetsWithOneIdTheSecondGetsAnother) {
  const std::string widget = R"({"id":"1","kind":"K","family":"small"})";
  const std::string later = R"({"id":"2","kind":"K","family":"small"})";
  const StoredWidgets stored = read(list(widget + "," + widget + "," + later));
  EXPECT_EQ(stored.widgets[1].placed->id, "3");
  EXPECT_THAT(stored.remarks,
              ElementsAre("two widgets had the id \"1\", the second one is now \"3\""));
  const StoredWidgets again = read(widgetStoreText(stored));
  EXPECT_EQ(placed(again), placed(stored));
  EXPECT_THAT(again.remarks, IsEmpty());
}

TEST(WidgetStoreText, ThoseBehindTheFirstTwoHundredStayAndAreNotShown) {
  std::string widgets;
  for (int number = 1; number <= 205; ++number) {
    if (number > 1) widgets += ",";
    widgets += R"({"id":")" + std::to_string(number) + R"(","kind":"K","family":"small"})";
  }
  const StoredWidgets stored = read(list(widgets));
  EXPECT_EQ(placed(stored).size(), 200U);
  EXPECT_EQ(stored.widgets.size(), 205U);
  EXPECT_THAT(stored.remarks, ElementsAre("those behind the first 200 widgets are not shown"));
  EXPECT_EQ(read(widgetStoreText(stored)), stored);
}

TEST(WidgetStoreText, ALaterVersionIsReadAsFarAsItIsUnderstood) {
  const StoredWidgets stored =
      read(R"({"version":2,"widgets":[{"id":"a","kind":"K","family":"small"},{"id":"b"}]})");
  EXPECT_TRUE(stored.isOfLaterVersion);
  EXPECT_EQ(placed(stored).size(), 1U);
  const StoredWidgets other = read(R"({"version":18446744073709551615,"widgets":{}})");
  EXPECT_TRUE(other.isOfLaterVersion);
  EXPECT_FALSE(other.hasList);
}

TEST(WidgetStoreText, ATextThatMakesNoSenseIsRefusedWithTheReason) {
  struct Case {
    std::string text;
    std::string reason;
  };
  const std::string valid = list("");
  for (const auto& [text, reason] : std::vector<Case>{
           {"", "it is no JSON"},
           {"[]", "it is no JSON object"},
           {"{}", "\"version\" is missing"},
           {R"({"version":1})", "\"widgets\" is missing, or no list"},
           {R"({"version":1,"widgets":{}})", "\"widgets\" is missing, or no list"},
           {R"({"version":"1","widgets":[]})", "\"version\" is no whole number"},
           {R"({"version":1.0,"widgets":[]})", "\"version\" is no whole number"},
           {R"({"version":0,"widgets":[]})", "\"version\" is none that there was"},
           {valid + "x", "it is no JSON"},
           {valid + std::string("\0", 1), "it holds a zero byte"},
           {"{\"version\":1,\"widgets\":[],\"a\":\"\xff\"}", "it is no JSON"},
           {R"({"a":)" + std::string(64, '[') + std::string(64, ']') + "}", "it nests too deep"},
           {std::string(500'000, '['), "it nests too deep"}}) {
    const auto stored = readWidgetStore(text);
    ASSERT_FALSE(stored) << text;
    EXPECT_EQ(stored.error(), reason) << text.substr(0, 80);
  }
}

TEST(WidgetStoreText, CutAnywhereItIsNeverTakenForAWholeOne) {
  const std::string whole = fixture();
  const std::size_t end = whole.rfind('}');
  for (std::size_t length = 0; length <= end; ++length) {
    EXPECT_FALSE(readWidgetStore(whole.substr(0, length))) << length;
  }
}

TEST(WidgetStoreText, IsIndentedUnlessThatAloneMakesItTooLong) {
  std::string numbers = "0";
  for (int count = 0; count < 150'000; ++count) numbers += ",0";
  const std::string text = R"({"version":1,"widgets":[],"a":[[)" + numbers + "]]}";
  EXPECT_TRUE(widgetStoreText(read(text)) == text + "\n");
}

TEST(WidgetStoreText, AnIdOfWhatIsNotUnderstoodIsTaken) {
  StoredWidgets stored = read(list(R"({"id":"8","kind":"K","family":"vast"},)"
                                   R"({"id":"3","kind":"K","family":"small"},)"
                                   R"({"id":"3","kind":"K","family":"small"},7,{"id":12})"));
  EXPECT_EQ(stored.widgets[2].placed->id, "9");
  EXPECT_EQ(stored.ids.give(), "10");
}

}  // namespace
}  // namespace lanternfold
