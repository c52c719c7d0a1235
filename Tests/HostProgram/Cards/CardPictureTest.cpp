// What a card is drawn anew for.
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "HostProgram/Cards/CardPicture.h"
#include "Support/RelativeDateText.h"
#include "Tests/Support/SimulatedClock.h"
#include "ViewTree/Elements.h"

namespace lanternfold {
namespace {

using std::chrono::hours;
using std::chrono::minutes;

/// As the desktop's: the date of what is shown, in words of the day on which it is looked at.
class CardPictureTest : public testing::Test {
 protected:
  CardPictureTest() { clock_.advance(hours(23) + minutes(58)); }

  int timesTold_ = 0;
  SimulatedClock clock_;
  PictureRenderer renderer_{
      {.assetFolder = std::filesystem::path(LANTERNFOLD_SOURCE_DIR) / "Assets",
       .report = [](std::string_view line) { ADD_FAILURE() << line; }}};
  CardDrawing drawing_{.renderer = renderer_,
                       .report = [](std::string_view line) { ADD_FAILURE() << line; },
                       .timeText =
                           [this](auto time) {
                             ++timesTold_;
                             return relativeDateText(time, clock_.now(),
                                                     {.locale = "en_GB", .timeZone = "UTC"});
                           }};
  CardPicture picture_{drawing_};
  const View view_ = drawingTime("Last update %@", {});
  const View timeless_ = text("News", {});
};

TEST_F(CardPictureTest, TheLastUpdateIsTheDateOfTheAnswerHoweverLaterItIsDrawn) {
  const CardState state{.size = {170, 170}, .time = clock_.now() - minutes(50)};
  EXPECT_TRUE(picture_.show(view_, state));
  EXPECT_EQ(picture_.description(), "Last update Today, 23:08");
  clock_.advance(minutes(1));
  drawing_.scheme = ColourScheme::dark;
  EXPECT_TRUE(picture_.show(state));
  EXPECT_EQ(picture_.description(), "Last update Today, 23:08");
}

TEST_F(CardPictureTest, FromMidnightOnItWasYesterday) {
  const CardState state{.size = {170, 170}, .time = clock_.now()};
  EXPECT_TRUE(picture_.show(view_, state));
  clock_.advance(minutes(1));
  EXPECT_FALSE(picture_.show(view_, state)) << "nothing of it is another";
  clock_.advance(minutes(1));
  EXPECT_TRUE(picture_.show(view_, state));
  EXPECT_EQ(picture_.description(), "Last update Yesterday, 23:58");
}

TEST_F(CardPictureTest, TheTimeIsNotPutIntoWordsForACardThatDoesNotShowIt) {
  const CardState state{.size = {170, 170}, .time = clock_.now()};
  EXPECT_TRUE(picture_.show(timeless_, state));
  EXPECT_FALSE(picture_.show(state));
  EXPECT_EQ(timesTold_, 0);
}

TEST_F(CardPictureTest, ATimeThatIsSwitchedOnLaterIsThereAtOnce) {
  const CardState state{.size = {170, 170}, .time = clock_.now()};
  (void)picture_.show(timeless_, state);
  EXPECT_TRUE(picture_.show(vstack(HorizontalAlignment::leading, 0, {timeless_, view_}), state));
  EXPECT_EQ(timesTold_, 1);
  EXPECT_THAT(picture_.description(), testing::HasSubstr("Last update Today, 23:58"));
}

}  // namespace
}  // namespace lanternfold
