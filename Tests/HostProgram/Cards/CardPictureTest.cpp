// When the picture of a card is another one.
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

  SimulatedClock clock_;
  PictureRenderer renderer_{
      {.assetFolder = std::filesystem::path(LANTERNFOLD_SOURCE_DIR) / "Assets",
       .report = [](std::string_view line) { ADD_FAILURE() << line; }}};
  CardDrawing drawing_{.renderer = renderer_,
                       .report = [](std::string_view line) { ADD_FAILURE() << line; },
                       .timeText =
                           [this](auto time) {
                             return relativeDateText(time, clock_.now(),
                                                     {.locale = "en_GB", .timeZone = "UTC"});
                           }};
  CardPicture picture_{drawing_};
  const View view_ = drawingTime("Last update %@", {});
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

}  // namespace
}  // namespace lanternfold
