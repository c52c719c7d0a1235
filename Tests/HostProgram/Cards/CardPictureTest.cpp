// What a card is drawn anew for.
#include <filesystem>

#include <gtest/gtest.h>

#include "HostProgram/Cards/CardPicture.h"
#include "ViewTree/Elements.h"

namespace lanternfold {
namespace {

class CardPictureTest : public testing::Test {
 protected:
  int timesTold_ = 0;
  std::string now_ = "Today, 10:30 AM";
  PictureRenderer renderer_{
      {.assetFolder = std::filesystem::path(LANTERNFOLD_SOURCE_DIR) / "Assets", .report = {}}};
  CardDrawing drawing_{.renderer = renderer_,
                       .report = [](std::string_view) {},
                       .timeText =
                           [this](auto) {
                             ++timesTold_;
                             return now_;
                           }};
  CardPicture picture_{drawing_};
  const CardState state_{.size = {170, 170}, .time = {}};
};

TEST_F(CardPictureTest, TheTimeIsNotPutIntoWordsForACardThatDoesNotShowIt) {
  EXPECT_TRUE(picture_.show(text("News", {}), state_));
  EXPECT_FALSE(picture_.show(state_));
  EXPECT_EQ(timesTold_, 0);
}

TEST_F(CardPictureTest, ATimeThatIsSwitchedOnLaterIsThereAtOnce) {
  (void)picture_.show(text("News", {}), state_);
  EXPECT_TRUE(picture_.show(vstack(HorizontalAlignment::leading, 0,
                                   {text("News", {}), drawingTime("Last update %@", {})}),
                            state_));
  EXPECT_EQ(timesTold_, 1);
  EXPECT_NE(picture_.description().find("Last update Today, 10:30 AM"), std::string::npos);
}

TEST_F(CardPictureTest, OtherWordsForTheTimeAreDrawn) {
  (void)picture_.show(drawingTime("Last update %@", {}), state_);
  now_ = "Yesterday, 10:30 AM";
  EXPECT_TRUE(picture_.show(state_));
  EXPECT_FALSE(picture_.show(state_));
}

}  // namespace
}  // namespace lanternfold
