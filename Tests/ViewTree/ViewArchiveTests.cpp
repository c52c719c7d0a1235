// What a host gets is what the extension had.
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Tests/ViewTree/ViewSamples.h"
#include "ViewTree/ViewArchive.h"

namespace lanternfold {
namespace {

std::string archived(const std::string& root) { return R"({"version":1,"root":)" + root + "}"; }

View decoded(const std::string& json) {
  const auto view = viewOfArchive(json);
  EXPECT_TRUE(view) << json.substr(0, 2000) << '\n'
                    << view.error().path << ": " << view.error().sentence;
  return view.value_or(emptyView());
}

std::size_t nodesOf(const View& view) {
  std::size_t count = 1;
  for (const View& child : view.children) count += nodesOf(child);
  return count;
}

TEST(ViewArchive, IsVersionAndRootOnOneLine) {
  EXPECT_EQ(archiveJson(hstack(VerticalAlignment::top, 5, {text("IP", {{8}}), symbol("globe")})),
            R"({"version":1,"root":{"type":"hstack","alignment":"top","spacing":5,"children":[)"
            R"({"type":"text","text":"IP","fontSize":8},{"type":"symbol","name":"globe"}]}})");
}

TEST(ViewArchive, LeavesOutWhatIsAsItUsuallyIs) {
  EXPECT_EQ(archiveJson(text("a", {{13}})),
            archived(R"({"type":"text","text":"a","fontSize":13})"));
  EXPECT_EQ(archiveJson(zstack(centred, {})), archived(R"({"type":"zstack"})"));
  EXPECT_EQ(archiveJson(circle(2).foreground(Colour::white())),
            archived(R"({"type":"foreground","colour":{"red":1,"green":1,"blue":1},)"
                     R"("children":[{"type":"circle","lineWidth":2}]})"));
}

TEST(ViewArchive, SpellsAnUnlimitedLength) {
  FrameNode frame;
  frame.width.maximum = unlimited;
  EXPECT_EQ(archiveJson(emptyView().frame(frame)),
            archived(R"({"type":"frame","maximumWidth":"unlimited",)"
                     R"("children":[{"type":"empty"}]})"));
}

TEST(ViewArchive, OfEveryKindOfNodeComesBackAsItWas) {
  for (const View& view : viewsOfEveryKind()) {
    const std::string json = archiveJson(view);
    EXPECT_EQ(decoded(json), view) << json;
    EXPECT_EQ(json.find('\n'), std::string::npos);
  }
}

TEST(ViewArchive, KeepsAccessibleNamesOfEveryNode) {
  for (View view : viewsOfEveryKind()) {
    const View named = std::move(view).accessible("name");
    EXPECT_EQ(decoded(archiveJson(named)), named);
  }
}

TEST(ViewArchive, OfAnyTreeComesBackAsItWas) {
  for (unsigned seed = 0; seed < 300; ++seed) {
    const View view = ViewMaker(seed).make(7);
    ASSERT_LE(nodesOf(view), mostArchivedNodes);
    ASSERT_EQ(decoded(archiveJson(view)), view) << "seed " << seed;
  }
}

TEST(ViewArchive, AsLargeAsItMayBeComesBackAsItWas) {
  const std::vector<View> leaves(mostArchivedNodes - 1, text("a", {{10}}));
  const View wide = vstack(HorizontalAlignment::centre, 0, leaves);
  EXPECT_EQ(decoded(archiveJson(wide)), wide);
  View deep = emptyView();
  for (std::size_t depth = 1; depth < deepestArchivedNode; ++depth)
    deep = std::move(deep).padding(1);
  EXPECT_EQ(decoded(archiveJson(deep)), deep);
}

// A machine with hundreds of bridges has as many cards, of which the last ones have no place
// anyway.
TEST(ViewArchive, OfTooManyNodesLosesTheLastOnes) {
  const View card = text("a", {{10}}).padding(2).background(roundedRectangle(3, Colour::white()));
  const View view = vstack(HorizontalAlignment::leading, 5, std::vector<View>(5000, card))
                        .padding(16)
                        .background(circle(2));
  const View less = decoded(archiveJson(view));
  EXPECT_LE(nodesOf(less), mostArchivedNodes);
  EXPECT_GT(nodesOf(less), mostArchivedNodes * 9 / 10);
  const View& cards = less.children.front().children.front();
  EXPECT_EQ(cards.children.front(), card);
  EXPECT_EQ(cards.children.at(2000), card);
}

TEST(ViewArchive, OfATreeTooDeepIsEmptyBelow) {
  View deep = text("a", {{10}});
  for (int depth = 0; depth < 500; ++depth) {
    deep = depth % 3 == 0 ? std::move(deep).padding(1).background(emptyView())
                          : hstack(VerticalAlignment::top, 0, {std::move(deep), symbol("globe")});
  }
  const View less = decoded(archiveJson(deep));
  EXPECT_EQ(less.node, deep.node);
}

TEST(ViewArchive, OfAnyTreeBeyondTheLimitsCanBeRead) {
  for (unsigned seed = 0; seed < 6; ++seed) {
    ViewMaker maker(seed);
    std::vector<View> many;
    for (std::size_t nodes = 0; nodes < 12'000; nodes += nodesOf(many.back())) {
      many.push_back(maker.make(9));
    }
    EXPECT_LE(nodesOf(decoded(archiveJson(zstack(centred, many)))), mostArchivedNodes);
  }
}

TEST(ViewArchive, WithTextsBeyondItsLengthLosesTheLastOnes) {
  std::string longest;
  for (std::size_t count = 0; count < 512; ++count) longest += "\U0001F680";
  const View view =
      vstack(HorizontalAlignment::leading, 0, std::vector<View>(5000, text(longest, {{10}})));
  const std::string json = archiveJson(view);
  EXPECT_LE(json.size(), longestViewArchive);
  EXPECT_GT(decoded(json).children.size(), 1000U);
}

TEST(ViewArchive, BringsNumbersWithinTheirBounds) {
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  const View view =
      hstack(VerticalAlignment::top, -unlimited, {circle(-1), circle(1e9)}).padding(nan);
  const View bounded =
      hstack(VerticalAlignment::top, -100'000, {circle(0), circle(100'000)}).padding(0);
  EXPECT_EQ(decoded(archiveJson(view)), bounded);
}

TEST(ViewArchive, MakesTextsFitToShowOnBothSides) {
  const View raw{SymbolNode{"a\xff\n", {}}, {}, "b\u202E\x1b"};
  const View fit{SymbolNode{"a\uFFFD ", {}}, {}, "b "};
  EXPECT_EQ(decoded(archiveJson(raw)), fit);
  EXPECT_EQ(decoded(archived(R"({"type":"text","text":"a\u0000\n\u202eb","fontSize":1})")),
            text("a  b", {{1}}));
  const View cut = decoded(
      archived(R"({"type":"text","fontSize":1,"text":")" + std::string(60'000, 'x') + "\"}"));
  EXPECT_EQ(cut, text(std::string(60'000, 'x'), {{1}}));
}

TEST(ViewArchive, OfALinkThatIsNoUrlIsItsContent) {
  const View content = symbol("globe");
  const View view{LinkNode{"no url"}, {content}, {}};
  EXPECT_EQ(decoded(archiveJson(view)), content);
}

TEST(ViewArchive, IgnoresMembersThatItDoesNotKnow) {
  EXPECT_EQ(decoded(R"({"later":[1,{"a":null}],"version":1,"root":{"blur":{"by":[true]},)"
                    R"("type":"circle","lineWidth":2},"more":-1e300})"),
            circle(2));
}

}  // namespace
}  // namespace lanternfold
