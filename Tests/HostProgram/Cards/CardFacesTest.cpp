// Which buttons and links of a card can be pressed, and where.
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "HostProgram/Cards/CardFaces.h"

namespace lanternfold {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

LaidOutView placed(ViewNode node, Rect frame, std::vector<LaidOutView> children = {}) {
  LaidOutView view;
  view.node = std::move(node);
  view.frame = frame;
  view.children = std::move(children);
  return view;
}

constexpr Size cardSize{170, 170};
constexpr Rect wholeCard{{0, 0}, cardSize};

TEST(CardFacesTest, AButtonInsideOfALinkStandsAboveIt) {
  LaidOutView button = placed(ButtonNode{"RefreshAppIntent"}, {{8, 145}, {17, 17}});
  button.accessibleDescription = "Refresh";
  LaidOutView link = placed(LinkNode{"https://example.com"}, wholeCard, {button});
  link.accessibleDescription = "Bandwidth";
  const auto faces = cardFaces(placed(ZStackNode{}, wholeCard, {link}), cardSize);
  EXPECT_EQ(faces, (std::vector<CardFace>{
                       {LinkNode{"https://example.com"}, wholeCard, "Bandwidth"},
                       {ButtonNode{"RefreshAppIntent"}, {{8, 145}, {17, 17}}, "Refresh"}}));
}

TEST(CardFacesTest, WhatLeavesTheCardOrItsClipEndsThere) {
  const LaidOutView reachingOut = placed(ButtonNode{"a"}, {{-20, 100}, {400, 400}});
  const LaidOutView clipped =
      placed(ClipNode{10}, {{50, 50}, {20, 20}}, {placed(ButtonNode{"b"}, {{40, 60}, {100, 5}})});
  const auto faces = cardFaces(placed(ZStackNode{}, wholeCard, {reachingOut, clipped}), cardSize);
  ASSERT_THAT(faces, SizeIs(2));
  EXPECT_EQ(faces[0].frame, (Rect{{0, 100}, {170, 70}}));
  EXPECT_EQ(faces[1].frame, (Rect{{50, 60}, {20, 5}}));
}

TEST(CardFacesTest, WhatCannotBeSeenCannotBePressed) {
  constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();
  const auto faces =
      cardFaces(placed(ZStackNode{}, wholeCard,
                       {placed(ButtonNode{"outside"}, {{170, 0}, {50, 50}}),
                        placed(ButtonNode{"flat"}, {{10, 10}, {50, 0}}),
                        placed(ButtonNode{"nowhere"}, {{noNumber, 10}, {50, 50}}),
                        placed(ButtonNode{"shapeless"}, {{10, 10}, {noNumber, 50}}),
                        placed(ClipNode{0}, {{0, 0}, {0, 0}},
                               {placed(ButtonNode{"cut off"}, {{10, 10}, {50, 50}})})}),
                cardSize);
  EXPECT_THAT(faces, IsEmpty());
}

TEST(CardFacesTest, ThereIsABoundOnWhatComesFromOutside) {
  const std::vector<LaidOutView> thousands(5000, placed(ButtonNode{"a"}, {{0, 0}, {5, 5}}));
  EXPECT_THAT(cardFaces(placed(ZStackNode{}, wholeCard, thousands), cardSize),
              SizeIs(mostCardFaces));
}

}  // namespace
}  // namespace lanternfold
