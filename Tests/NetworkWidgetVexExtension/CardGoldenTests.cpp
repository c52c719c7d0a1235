// What every state of the adapter's card looks like, node by node.
#include <filesystem>

#include <gtest/gtest.h>

#include "NetworkWidgetVexExtension/Views/NetworkAdapterWidgetEntryView.h"
#include "Tests/NetworkWidgetVexExtension/CardStates.h"
#include "Tests/Support/GoldenText.h"
#include "Tests/Support/MetricTextMeasurer.h"
#include "ViewTree/TextDump.h"

namespace lanternfold {
namespace {

class CardGolden : public testing::TestWithParam<CardState> {};

TEST_P(CardGolden, LooksAsBlessed) {
  const FakeStringTable strings;
  const MetricTextMeasurer measurer;
  const View view = NetworkAdapterWidgetEntryView{GetParam().entry}.body({strings});
  const LaidOutView card =
      layOut(view, widgetSize(WidgetFamily::medium), {measurer, "Today, 10:30"});
  expectGolden(std::filesystem::path(LANTERNFOLD_SOURCE_DIR) /
                   "Tests/NetworkWidgetVexExtension/Golden" / (GetParam().name + ".txt"),
               textDump(card));
}

INSTANTIATE_TEST_SUITE_P(States, CardGolden, testing::ValuesIn(cardStates()),
                         [](const auto& state) { return state.param.name; });

}  // namespace
}  // namespace lanternfold
