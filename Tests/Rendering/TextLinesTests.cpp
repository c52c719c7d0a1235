#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pango/pango.h>

#include "Rendering/TextLines.h"
#include "Tests/Rendering/ChosenTypefaces.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const char* const arabic = "\u0634\u0628\u0643\u0629";
const char* const hebrew = "\u05E9\u05DC\u05D5\u05DD";

class TextLinesTest : public testing::Test {
 protected:
  void choose(const std::vector<std::string>& folders) {
    lines_.reset();
    typefaces_.reset();
    typefaces_ = std::make_unique<ChosenTypefaces>(folders);
    lines_ =
        std::make_unique<TextLines>([this](std::string_view line) { reports_.emplace_back(line); });
  }

  const TextLine& line(std::string_view text) { return lines_->line(text, FontWeight::regular); }

  PangoDirection direction(std::string_view text) {
    return static_cast<PangoDirection>(line(text).line()->resolved_dir);
  }

  /// Whether the characters of `part` stand from left to right within `text`.
  bool runsToTheRight(const std::string& text, std::string_view part) {
    PangoLayoutLine* const shown = line(text).line();
    const std::string_view set = pango_layout_get_text(line(text).layout.get());
    const auto first = static_cast<int>(set.find(part));
    int before = -1;
    for (int index = first; index < first + static_cast<int>(part.size()); ++index) {
      int x = 0;
      pango_layout_line_index_to_x(shown, index, FALSE, &x);
      if (x <= before) return false;
      before = x;
    }
    return true;
  }

  std::vector<std::string> reports_;
  std::unique_ptr<ChosenTypefaces> typefaces_;
  std::unique_ptr<TextLines> lines_;
};

TEST_F(TextLinesTest, RunWhereTheFirstLetterSays) {
  choose(manyFolders());
  EXPECT_EQ(direction("Ethernet"), PANGO_DIRECTION_LTR);
  EXPECT_EQ(direction(hebrew), PANGO_DIRECTION_RTL);
  EXPECT_EQ(direction(arabic), PANGO_DIRECTION_RTL);
  EXPECT_EQ(direction(std::string("eth0 ") + arabic), PANGO_DIRECTION_LTR);
  EXPECT_EQ(direction(std::string("5 ") + arabic), PANGO_DIRECTION_RTL);
}

TEST_F(TextLinesTest, OfSharedCharactersAreOfTheUsersLanguage) {
  const ChosenTypefaces typefaces(manyFolders());
  for (const std::string language : {"ja", "zh-cn"}) {
    TextLines lines([](std::string_view line) { ADD_FAILURE() << line; }, language);
    const TextLine& shown = lines.line("\u76F4", FontWeight::regular);
    const auto& part = *static_cast<const PangoGlyphItem*>(shown.line()->runs->data);
    EXPECT_EQ(pango_language_to_string(part.item->analysis.language), language);
  }
}

TEST_F(TextLinesTest, WithoutALetterRunToTheRight) {
  choose(manyFolders());
  for (const std::string text : {"192.168.0.1/24", "::1", "12:34:56", "802.11", "-67"}) {
    EXPECT_EQ(direction(text), PANGO_DIRECTION_LTR) << text;
    EXPECT_TRUE(runsToTheRight(text, text)) << text;
  }
  EXPECT_TRUE(runsToTheRight("2001:db8::1", "2001:db8::1"));
}

TEST_F(TextLinesTest, KeepAddressesReadableAmongLettersThatRunToTheLeft) {
  choose(manyFolders());
  for (const char* letters : {hebrew, arabic}) {
    for (const std::string address : {"192.168.0.1", "2001:db8::1"}) {
      EXPECT_TRUE(runsToTheRight(std::string(letters) + " " + address, address)) << address;
    }
  }
}

TEST_F(TextLinesTest, HaveColouredPartsOnlyWithEmoji) {
  choose(manyFolders());
  EXPECT_FALSE(line("Home").hasColouredParts);
  EXPECT_FALSE(line(arabic).hasColouredParts);
  EXPECT_TRUE(line("Home \U0001F680").hasColouredParts);
}

TEST_F(TextLinesTest, HaveATypefaceForEveryScriptThatIsInstalled) {
  choose(manyFolders());
  for (const char* text :
       {arabic, hebrew, "\u0918\u0930", "\u0E1A\u0E49\u0E32\u0E19", "\u7DB2\u7D61", "\u30CD\u30C3",
        "\U0001F680", "\U0001F468\u200D\U0001F469\u200D\U0001F467", "\U0001F1E9\U0001F1EA",
        "e\u0301\u0323", "\uFFFD", "\u2026"}) {
    EXPECT_GT(line(text).width, 0) << text;
  }
  EXPECT_THAT(reports_, ElementsAre());
}

TEST_F(TextLinesTest, SayWhatNoTypefaceHasOnceAScript) {
  choose({interFolder});
  line("\u0E01\u0E02");
  line("\u0E03");
  line("\U0001F680");
  EXPECT_THAT(reports_, ElementsAre(HasSubstr("script thai such as U+0E01"),
                                    HasSubstr("emoji such as U+1F680")));
  EXPECT_GT(line("\u0E01\u0E02").width, 0);
}

TEST_F(TextLinesTest, OfAMachineWithoutTypefacesHaveRoomForABar) {
  choose({});
  EXPECT_THAT(reports_, ElementsAre(HasSubstr("no typeface is installed")));
  EXPECT_EQ(line("abcd").layout, nullptr);
  EXPECT_GT(line("abcd").width, 1);
  EXPECT_EQ(line("\u7DB2\u7D61").width, line("ab").width);
  EXPECT_GT(lines_->metrics({13}).height, lines_->metrics({13}).baseline);
  EXPECT_GT(lines_->metrics({13}).baseline, 0);
}

TEST_F(TextLinesTest, AreCutWhenTheyAreTooLong) {
  choose(manyFolders());
  const std::string most(maximumLineBytes, 'x');
  EXPECT_EQ(line(std::string(65536, 'x')).width, line(most).width);
  // A character is not torn apart.
  const std::string torn = std::string(maximumLineBytes - 1, 'x') + "\u7DB2";
  EXPECT_EQ(line(torn).width, line(most.substr(1)).width);
}

TEST_F(TextLinesTest, OfAFontWithoutASizeShowNothing) {
  choose(manyFolders());
  for (const double size : {0.0, -1.0, 1e9, std::nan(""), HUGE_VAL}) {
    EXPECT_EQ(lines_->width("abc", {size}), 0) << size;
    EXPECT_EQ(lines_->metrics({size}).height, 0) << size;
  }
}

TEST_F(TextLinesTest, OfAnyBytesAreSet) {
  choose(manyFolders());
  std::string everyByte;
  for (int byte = 0; byte < 256; ++byte) everyByte += static_cast<char>(byte);
  EXPECT_GT(line(everyByte).width, 0);
  EXPECT_GT(line("\xF0\x9F").width, 0);
}

}  // namespace
}  // namespace lanternfold
