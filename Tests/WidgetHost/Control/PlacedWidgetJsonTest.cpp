// The list of widgets as scripts get it.
#include <fstream>
#include <iterator>

#include "WidgetHost/Control/PlacedWidgetJson.h"

namespace lanternfold {
namespace {

std::string fixture() {
  std::ifstream stream(LANTERNFOLD_SOURCE_DIR "/Docs/formats/fixtures/ctl-list.json");
  return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(PlacedWidgetJson, IsWhatTheFormatSays) {
  const std::vector<PlacedWidget> widgets = {
      {.id = "1",
       .kind = "NetworkAdapterWidget",
       .family = WidgetFamily::medium,
       .configuration = {.showTimestamp = true,
                         .adapter = AdapterParameter{.identifier = "eth0",
                                                     .display = "Ethernet Adapter (eth0)"}},
       .position = {.monitor = "DP-1", .x = 1532, .y = 24}},
      {.id = "2",
       .kind = "WlanNetworkStateWidget",
       .family = WidgetFamily::small,
       .configuration = {.adapter = AdapterParameter{.identifier = std::nullopt, .display = ""}},
       .position = {.monitor = "", .x = -8, .y = 0}}};
  EXPECT_EQ(placedWidgetsJson(widgets) + "\n", fixture());
}

TEST(PlacedWidgetJson, IsAnEmptyArrayWithoutWidgets) { EXPECT_EQ(placedWidgetsJson({}), "[]"); }

TEST(PlacedWidgetJson, IsUtf8WhateverAWidgetIsCalled) {
  EXPECT_EQ(
      placedWidgetsJson(std::vector<PlacedWidget>{{.id = "\xff", .kind = "é\n"}}),
      R"([{"id":"�","kind":"é\n","family":"small","configuration":{},"monitor":"","x":0,"y":0}])");
}

}  // namespace
}  // namespace lanternfold
