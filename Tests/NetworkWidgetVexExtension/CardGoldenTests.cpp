// What every state of the cards looks like, node by node.
#include <filesystem>

#include <gtest/gtest.h>

#include "Tests/NetworkWidgetVexExtension/CardStates.h"
#include "Tests/Support/GoldenText.h"
#include "ViewTree/TextDump.h"

namespace lanternfold {
namespace {

class CardGolden : public testing::TestWithParam<CardState> {};

TEST_P(CardGolden, LooksAsBlessed) {
  expectGolden(std::filesystem::path(LANTERNFOLD_SOURCE_DIR) /
                   "Tests/NetworkWidgetVexExtension/Golden" / (GetParam().name + ".txt"),
               textDump(GetParam().laidOut()));
}

INSTANTIATE_TEST_SUITE_P(States, CardGolden, testing::ValuesIn(cardStates()),
                         [](const auto& state) { return state.param.name; });

}  // namespace
}  // namespace lanternfold
