#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "WidgetService/LineSplitter.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// What the handlers heard, in order: lines, and "(too long)".
class LineSplitterTest : public testing::Test {
 protected:
  LineSplitter splitter(std::size_t longestLine = 100) {
    return {longestLine,
            {.line = [this](std::string_view line) { heard_.emplace_back(line); },
             .tooLong = [this] { heard_.emplace_back("(too long)"); }}};
  }

  std::vector<std::string> heardOf(std::string_view bytes, std::size_t longestLine,
                                   std::size_t chunk) {
    heard_.clear();
    LineSplitter lines = splitter(longestLine);
    for (; bytes.size() > chunk; bytes.remove_prefix(chunk)) lines.take(bytes.substr(0, chunk));
    lines.take(bytes);
    return heard_;
  }

  std::vector<std::string> heard_;
};

TEST_F(LineSplitterTest, HandsOnLinesWithoutTheirEnds) {
  splitter().take("one\ntwo\r\nthree\n");
  EXPECT_THAT(heard_, ElementsAre("one", "two", "three"));
}

TEST_F(LineSplitterTest, TakesNoCarriageReturnButTheLastOneFromALine) {
  splitter().take("\ra\rb\r\r\n");
  EXPECT_THAT(heard_, ElementsAre("\ra\rb\r"));
}

TEST_F(LineSplitterTest, LinesOfNothingButSpaceAreNone) {
  splitter().take("\n\r\n \t \n\r\r\nx\n  y \n");
  EXPECT_THAT(heard_, ElementsAre("x", "  y "));
}

TEST_F(LineSplitterTest, TakesAnyBytes) {
  splitter().take(std::string_view("a\0b\xFF\xC3\n", 6));
  EXPECT_THAT(heard_, ElementsAre(std::string("a\0b\xFF\xC3", 5)));
}

TEST_F(LineSplitterTest, ALastLineWithoutAnEndIsNotHandedOn) {
  LineSplitter lines = splitter();
  lines.take("one\nunfinis");
  EXPECT_THAT(heard_, ElementsAre("one"));
  lines.take("");
  EXPECT_THAT(heard_, ElementsAre("one"));
  lines.take("hed\n");
  EXPECT_THAT(heard_, ElementsAre("one", "unfinished"));
}

TEST_F(LineSplitterTest, SaysTheSameHoweverTheBytesAreCut) {
  const std::string_view bytes =
      "ab\r\n\n12345678\n123456789\nshort\n1234567\r\n12345678\r\n \t\n"
      "a line that is much too long\r\n\r\n12345678901\nlast\n";
  const std::vector<std::string> whole = heardOf(bytes, 8, bytes.size());
  EXPECT_THAT(whole, ElementsAre("ab", "12345678", "(too long)", "short", "1234567", "(too long)",
                                 "(too long)", "(too long)", "last"));
  for (std::size_t chunk = 1; chunk < bytes.size(); ++chunk) {
    EXPECT_EQ(heardOf(bytes, 8, chunk), whole) << "in chunks of " << chunk;
  }
}

TEST_F(LineSplitterTest, ALineIsTooLongAsSoonAsThatIsKnownAndOnlyOnce) {
  LineSplitter lines = splitter(8);
  lines.take("12345678");
  EXPECT_THAT(heard_, IsEmpty());
  lines.take("9");
  EXPECT_THAT(heard_, ElementsAre("(too long)"));
  lines.take(std::string(1000, 'x'));
  lines.take("end\nnext\n");
  EXPECT_THAT(heard_, ElementsAre("(too long)", "next"));
}

TEST_F(LineSplitterTest, TheCarriageReturnCountsAmongTheBytesOfALine) {
  splitter(3).take("abc\nab\r\nabc\r\n");
  EXPECT_THAT(heard_, ElementsAre("abc", "ab", "(too long)"));
}

TEST_F(LineSplitterTest, ALineOfSpacesMayBeTooLongAllTheSame) {
  splitter(3).take("    \n   \n");
  EXPECT_THAT(heard_, ElementsAre("(too long)"));
}

TEST_F(LineSplitterTest, AMegabyteInSingleBytesTakesTimeInProportion) {
  constexpr std::size_t size = std::size_t{1024} * 1024;
  const std::string bytes = std::string(size, 'x') + "\n";
  EXPECT_EQ(heardOf(bytes, size, 1), std::vector{std::string(size, 'x')});
}

TEST_F(LineSplitterTest, IsACopyOfItsOwn) {
  LineSplitter lines = splitter();
  lines.take("on");
  LineSplitter copy = lines;
  lines.take("e\n");
  copy.take("ly\n");
  EXPECT_THAT(heard_, ElementsAre("one", "only"));
}

using LineSplitterDeathTest = LineSplitterTest;

TEST_F(LineSplitterDeathTest, AHandlerGivesItMoreBytes) {
  LineSplitter* itself = nullptr;
  LineSplitter lines(100,
                     {.line = [&](std::string_view) { itself->take("two\n"); }, .tooLong = [] {}});
  itself = &lines;
  EXPECT_DEATH(lines.take("one\n"), "a handler of a line splitter gave it more bytes");
}

TEST_F(LineSplitterDeathTest, LacksAHandler) {
  EXPECT_DEATH(LineSplitter(100, {.line = [](std::string_view) {}, .tooLong = nullptr}),
               "a line splitter lacks a handler");
}

}  // namespace
}  // namespace lanternfold
