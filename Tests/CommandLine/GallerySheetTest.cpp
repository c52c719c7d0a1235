// The gallery's sheet, from views to what stands where on it.
#include <filesystem>

#include <gtest/gtest.h>

#include "CommandLine/Gallery/GallerySheet.h"
#include "CommandLine/Gallery/GalleryStyle.h"
#include "NetworkWidgetVexExtension/Bundle/WidgetKinds.h"
#include "Tests/Support/BracketingStringTable.h"
#include "Tests/Support/FakeStringTable.h"
#include "Tests/Support/GoldenText.h"
#include "Tests/Support/MetricTextMeasurer.h"
#include "ViewTree/Elements.h"
#include "ViewTree/TextDump.h"

namespace lanternfold {
namespace {

GalleryCard card(std::string name, WidgetFamily family) {
  return {.displayName = std::move(name),
          .family = family,
          .view = linearGradient(Colour::named("BackgroundGradientStart"),
                                 Colour::named("BackgroundGradientEnd"))};
}

/// As many cards as the program has, in its order.
std::vector<GalleryCard> catalogue() {
  std::vector<GalleryCard> cards;
  for (const WidgetKind& widget : widgetKinds()) {
    for (const WidgetFamily family : widget.families) cards.push_back(card(widget.kind, family));
  }
  return cards;
}

LaidOutView laidOut(const GallerySheet& sheet,
                    LayoutDirection direction = LayoutDirection::leftToRight) {
  const MetricTextMeasurer measurer;
  return layOut(sheet.view, sheet.sizePoints,
                {.measurer = measurer, .drawingTime = "Today, 10:30", .direction = direction});
}

template <typename Node>
void collect(const LaidOutView& view, std::vector<const LaidOutView*>& found) {
  if (std::holds_alternative<Node>(view.node)) found.push_back(&view);
  for (const LaidOutView& child : view.children) collect<Node>(child, found);
}

template <typename Node>
std::vector<Rect> framesOf(const LaidOutView& view) {
  std::vector<const LaidOutView*> found;
  collect<Node>(view, found);
  std::vector<Rect> frames;
  for (const LaidOutView* each : found) frames.push_back(each->frame);
  return frames;
}

std::vector<std::string> textsOf(const LaidOutView& view) {
  std::vector<const LaidOutView*> found;
  collect<TextNode>(view, found);
  std::vector<std::string> texts;
  for (const LaidOutView* each : found) texts.push_back(each->shownText);
  return texts;
}

bool overlap(const Rect& one, const Rect& other) {
  return one.left() < other.right() && other.left() < one.right() && one.top() < other.bottom() &&
         other.top() < one.bottom();
}

class GallerySheetTest : public testing::Test {
 protected:
  GallerySheet sheetOf(const std::vector<GalleryCard>& cards) const {
    return makeGallerySheet(cards, strings_);
  }

  FakeStringTable strings_;
};

TEST_F(GallerySheetTest, OfTwoCardsIsAsBlessedGolden) {
  const GallerySheet sheet =
      sheetOf({card("Panoramic", WidgetFamily::small), card("Internet", WidgetFamily::medium)});
  expectGolden(
      std::filesystem::path(LANTERNFOLD_SOURCE_DIR) / "Tests/CommandLine/Golden/gallery-sheet.txt",
      textDump(laidOut(sheet)));
}

TEST_F(GallerySheetTest, TheCatalogueFillsFourRowsOfEachHalf) {
  const GallerySheet sheet = sheetOf(catalogue());
  const std::vector<Rect> cards = framesOf<ClipNode>(laidOut(sheet));
  ASSERT_EQ(cards.size(), 18U);
  // Four columns from 64 on and four rows from 126 on, a half of 880 each.
  const std::vector<Point> places = {{64, 126},  {258, 126}, {64, 338},  {646, 126}, {452, 338},
                                     {452, 550}, {64, 762},  {258, 762}, {452, 762}};
  for (std::size_t index = 0; index < places.size(); ++index) {
    const auto& [x, y] = places[index];
    EXPECT_EQ(cards[index].origin, (Point{x, y})) << index;
    EXPECT_EQ(cards[index + places.size()].origin, (Point{x + 880, y})) << index;
  }
  EXPECT_EQ(sheet.sizePoints, (Size{1760, 1006}));
}

TEST_F(GallerySheetTest, NothingOverlapsAndNothingLeavesItsHalf) {
  const LaidOutView view = laidOut(sheetOf(catalogue()));
  std::vector<Rect> all = framesOf<ClipNode>(view);
  for (const Rect& text : framesOf<TextNode>(view)) all.push_back(text);
  ASSERT_EQ(all.size(), 18U + 2 * 2 + 18 * 2) << "cards, headings and captions";
  for (std::size_t one = 0; one < all.size(); ++one) {
    const double left = all[one].left() < 880 ? 0 : 880;
    EXPECT_GE(all[one].left(), left + 64);
    EXPECT_LE(all[one].right(), left + 880 - 64);
    EXPECT_GE(all[one].top(), 0);
    EXPECT_LE(all[one].bottom(), view.frame.bottom());
    for (std::size_t other = 0; other < one; ++other) {
      EXPECT_FALSE(overlap(all[one], all[other])) << one << " and " << other;
    }
  }
}

TEST_F(GallerySheetTest, EveryCardHasTheSizeAndTheCornersOfItsFamily) {
  for (const WidgetFamily family :
       {WidgetFamily::small, WidgetFamily::medium, WidgetFamily::large}) {
    const LaidOutView view = laidOut(sheetOf({card("Any", family)}));
    std::vector<const LaidOutView*> clips;
    collect<ClipNode>(view, clips);
    ASSERT_EQ(clips.size(), 2U);
    for (const LaidOutView* clip : clips) {
      EXPECT_EQ(clip->frame.size, widgetSize(family));
      EXPECT_EQ(std::get<ClipNode>(clip->node).cornerRadius, widgetCornerRadius);
    }
  }
}

TEST_F(GallerySheetTest, EachHalfIsPaintedInItsScheme) {
  std::vector<const LaidOutView*> schemes;
  const LaidOutView view = laidOut(sheetOf({card("Any", WidgetFamily::small)}));
  collect<ColourSchemeNode>(view, schemes);
  ASSERT_EQ(schemes.size(), 2U);
  EXPECT_EQ(std::get<ColourSchemeNode>(schemes[0]->node).scheme, ColourScheme::light);
  EXPECT_EQ(std::get<ColourSchemeNode>(schemes[1]->node).scheme, ColourScheme::dark);
  EXPECT_LT(schemes[0]->frame.right(), schemes[1]->frame.left());
}

TEST_F(GallerySheetTest, CaptionsSayTheWidgetAndItsFamilyBelowTheHeadingOfTheirScheme) {
  EXPECT_EQ(
      textsOf(laidOut(sheetOf({card("Bandwidth Monitor", WidgetFamily::small)}))),
      (std::vector<std::string>{"Light", "Lanternfold Widgets", "Bandwidth Monitor", "Small",
                                "Dark", "Lanternfold Widgets", "Bandwidth Monitor", "Small"}));
}

TEST_F(GallerySheetTest, TheWordsAreThoseOfTheUsersLanguage) {
  const BracketingStringTable strings;
  const std::vector<std::string> texts = textsOf(
      laidOut(makeGallerySheet({card("a", WidgetFamily::small), card("b", WidgetFamily::medium),
                                card("c", WidgetFamily::large)},
                               strings)));
  for (const char* word : {"«Light»", "«Dark»", "«Small»", "«Medium»", "«Large»"}) {
    EXPECT_THAT(texts, testing::Contains(word));
  }
}

TEST_F(GallerySheetTest, ALongNameIsShortenedAndTheFamilyStaysWhole) {
  const std::vector<std::string> texts =
      textsOf(laidOut(sheetOf({card("Surveillance de la bande passante", WidgetFamily::small)})));
  EXPECT_THAT(texts[2], testing::EndsWith("…"));
  EXPECT_EQ(texts[3], "Small");
}

TEST_F(GallerySheetTest, WithoutTheWifiItsPlacesAreLeftFree) {
  std::vector<GalleryCard> cards = catalogue();
  cards.resize(7);
  EXPECT_EQ(framesOf<ClipNode>(laidOut(sheetOf(cards))).size(), 14U);
  EXPECT_EQ(sheetOf(cards).sizePoints, (Size{1760, 1006}));
}

TEST_F(GallerySheetTest, ALanguageFromRightToLeftMirrorsTheSheet) {
  const GallerySheet sheet = sheetOf(catalogue());
  const std::vector<Rect> usual = framesOf<ClipNode>(laidOut(sheet));
  const std::vector<Rect> mirrored =
      framesOf<ClipNode>(laidOut(sheet, LayoutDirection::rightToLeft));
  ASSERT_EQ(usual.size(), mirrored.size());
  for (std::size_t index = 0; index < usual.size(); ++index) {
    EXPECT_DOUBLE_EQ(mirrored[index].right(), sheet.sizePoints.width - usual[index].left());
    EXPECT_DOUBLE_EQ(mirrored[index].top(), usual[index].top());
  }
}

// 4.5 is what the accessibility guidelines ask of small text.
TEST(GalleryColours, KeepCaptionsReadableOnTheWholeWallpaper) {
  for (const GalleryColours* colours : {&lightGalleryColours(), &darkGalleryColours()}) {
    for (const Rgba& wallpaper : {colours->wallpaperTop, colours->wallpaperBottom}) {
      // The captions stand on the lower ends of the shadows.
      Rgba shaded = wallpaper;
      for (int layer = 0; layer < GalleryMeasures::shadowLayers; ++layer) {
        Rgba shadow = colours->shadow;
        shadow.alpha = colours->shadowLayerOpacity;
        shaded = blended(shadow, shaded);
      }
      for (const Rgba& under : {wallpaper, shaded}) {
        EXPECT_GE(contrastRatio(colours->text, under), 7);
        EXPECT_GE(contrastRatio(colours->secondaryText, under), 4.5);
      }
    }
  }
}

}  // namespace
}  // namespace lanternfold
