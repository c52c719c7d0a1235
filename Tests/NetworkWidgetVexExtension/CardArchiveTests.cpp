// The cards as a host gets them.
#include <gtest/gtest.h>

#include "Tests/NetworkWidgetVexExtension/CardStates.h"
#include "ViewTree/ViewArchive.h"

namespace lanternfold {
namespace {

class CardArchive : public testing::TestWithParam<CardState> {};

TEST_P(CardArchive, ComesBackAsItWas) {
  const FakeStringTable strings;
  const View view = GetParam().view(strings);
  EXPECT_EQ(viewOfArchive(archiveJson(view)), view);
}

// Each choice of rows once held all of them eleven times.
TEST_P(CardArchive, IsSmall) {
  const FakeStringTable strings;
  EXPECT_LT(archiveJson(GetParam().view(strings)).size(), 20'000U);
}

INSTANTIATE_TEST_SUITE_P(States, CardArchive, testing::ValuesIn(cardStates()),
                         [](const auto& state) { return state.param.name; });

}  // namespace
}  // namespace lanternfold
