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

// Each choice of rows once held all of them eleven times, and later each card three times.
TEST_P(CardArchive, HoldsEveryRowOnce) {
  const FakeStringTable strings;
  const std::string archive = archiveJson(GetParam().view(strings));
  std::size_t cards = 0;
  constexpr std::string_view card = R"("accessoryRow")";
  for (auto at = archive.find(card); at != std::string::npos; at = archive.find(card, at + 1)) {
    ++cards;
  }
  EXPECT_LT(archive.size(), 3'000 + 9'000 * cards);
}

INSTANTIATE_TEST_SUITE_P(States, CardArchive, testing::ValuesIn(cardStates()),
                         [](const auto& state) { return state.param.name; });

}  // namespace
}  // namespace lanternfold
