// What is painted of the card in each colour scheme.
#include <filesystem>

#include <gtest/gtest.h>

#include "NetworkWidgetVexExtension/Views/NetworkAdapterWidgetEntryView.h"
#include "Rendering/ColourFile.h"
#include "Tests/NetworkWidgetVexExtension/CardStates.h"
#include "Tests/Support/GoldenText.h"
#include "Tests/Support/MetricTextMeasurer.h"
#include "ViewTree/TextDump.h"

namespace lanternfold {
namespace {

ColourPalette assetColours() {
  return readColours(std::filesystem::path(LANTERNFOLD_SOURCE_DIR) / "Assets",
                     [](std::string_view line) { ADD_FAILURE() << line; });
}

std::string drawListOf(ColourScheme scheme) {
  const FakeStringTable strings;
  const MetricTextMeasurer measurer;
  const View view = NetworkAdapterWidgetEntryView{timestampEntry()}.body({strings});
  const LaidOutView card =
      layOut(view, widgetSize(WidgetFamily::medium), {measurer, "Today, 10:30"});
  const auto report = [](std::string_view line) { ADD_FAILURE() << line; };
  const ColourPalette colours = assetColours();
  return textDump(makeDrawList(card, {colours, scheme, report}));
}

std::filesystem::path golden(const char* name) {
  return std::filesystem::path(LANTERNFOLD_SOURCE_DIR) / "Tests/Rendering/Golden" / name;
}

TEST(CardDrawList, OfTheLightSchemeIsAsBlessed) {
  expectGolden(golden("card-light.txt"), drawListOf(ColourScheme::light));
}

TEST(CardDrawList, OfTheDarkSchemeIsAsBlessed) {
  expectGolden(golden("card-dark.txt"), drawListOf(ColourScheme::dark));
}

}  // namespace
}  // namespace lanternfold
