// The page on golden pictures that differ, and who writes it.
#include <fstream>
#include <iterator>

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "Tests/Pictures/EncodedPng.h"
#include "Tests/Pictures/GoldenPicture.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

std::string contentsOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::string plainPng(std::uint32_t colour, std::size_t width = 8) {
  return encodedPng(
      {.width = width, .height = 8, .pixels = std::vector<std::uint32_t>(width * 8, colour)});
}

const std::string white = plainPng(0xFFFFFFFFU);
const std::string black = plainPng(0xFF000000U);

class PictureReportTest : public testing::Test {
 protected:
  std::string page() const { return contentsOf(report_.page()); }
  PictureFinding finding(std::string name) const {
    return {.name = std::move(name),
            .sentence = "it differs",
            .blessed = "old bytes",
            .actual = "new bytes",
            .difference = "difference bytes"};
  }

  const TemporaryFolder temporary_;
  const fs::path folder_ = temporary_.path() / "report";
  const PictureReport report_{folder_};
};

TEST_F(PictureReportTest, ShowsOldNewAndDifferenceSideBySide) {
  report_.add(finding("card"));
  EXPECT_THAT(page(),
              testing::AllOf(HasSubstr("<h1>1 picture differs</h1>"), HasSubstr("<h2>card</h2>"),
                             HasSubstr("it differs"), HasSubstr("make golden-update FILTER=card")));
  const std::pair<const char*, const char*> files[] = {{"card/old.png", "old bytes"},
                                                       {"card/new.png", "new bytes"},
                                                       {"card/difference.png", "difference bytes"}};
  std::size_t before = 0;
  for (const auto& [file, bytes] : files) {
    EXPECT_EQ(contentsOf(folder_ / file), bytes);
    const std::size_t at = page().find("src=\"" + std::string(file) + "\"");
    EXPECT_NE(at, std::string::npos) << file;
    EXPECT_GT(at, before);
    before = at;
  }
}

TEST_F(PictureReportTest, HasAllFindingsOnOnePageInTheirOrder) {
  report_.add(finding("b"));
  PictureReport(folder_).add(finding("a"));
  EXPECT_THAT(page(), HasSubstr("2 pictures differ"));
  EXPECT_LT(page().find("<h2>a</h2>"), page().find("<h2>b</h2>"));
}

TEST_F(PictureReportTest, APictureThatIsMendedLeavesThePageAndTheLastOneTakesItAlong) {
  report_.add(finding("a"));
  report_.add(finding("b"));
  report_.remove("a");
  EXPECT_THAT(page(), testing::AllOf(HasSubstr("1 picture differs"), Not(HasSubstr("<h2>a</h2>"))));
  report_.remove("b");
  EXPECT_FALSE(fs::exists(report_.page()));
  report_.remove("b");
}

TEST_F(PictureReportTest, ANewFindingTakesThePlaceOfTheOldOne) {
  report_.add(finding("card"));
  PictureFinding second = finding("card");
  second.blessed.clear();
  second.difference.clear();
  report_.add(second);
  EXPECT_THAT(page(), testing::AllOf(HasSubstr("1 picture differs"), HasSubstr("card/new.png"),
                                     Not(HasSubstr("old.png")), Not(HasSubstr("difference.png"))));
  EXPECT_FALSE(fs::exists(folder_ / "card/old.png"));
}

TEST_F(PictureReportTest, TextsAreNoMarkup) {
  PictureFinding odd = finding("card");
  odd.sentence = "<script> & \"quotes\"";
  report_.add(odd);
  EXPECT_THAT(page(), testing::AllOf(HasSubstr("&lt;script&gt; &amp; &quot;quotes&quot;"),
                                     Not(HasSubstr("<script>"))));
}

class ExpectGoldenPicture : public PictureReportTest {
 protected:
  GoldenPictures pictures(bool isUpdating = false) const {
    return {.folder = temporary_.path() / "golden", .report = report_, .isUpdating = isUpdating};
  }
  /// The failures that comparing `png` with the picture of `name` adds to a test.
  std::string failures(const std::string& name, const std::string& png) const {
    testing::TestPartResultArray results;
    {
      const testing::ScopedFakeTestPartResultReporter reporter(
          testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &results);
      expectGoldenPicture(pictures(), name, png);
    }
    std::string messages;
    for (int index = 0; index < results.size(); ++index) {
      messages += results.GetTestPartResult(index).message();
    }
    return messages;
  }
};

TEST_F(ExpectGoldenPicture, PassesWhatLooksAsBlessed) {
  expectGoldenPicture(pictures(/*isUpdating=*/true), "card", white);
  EXPECT_EQ(contentsOf(temporary_.path() / "golden/card.png"), white);
  EXPECT_EQ(failures("card", white), "");
  EXPECT_EQ(failures("card", plainPng(0xFFFEFEFEU)), "") << "a difference that nobody sees";
  EXPECT_FALSE(fs::exists(report_.page()));
}

TEST_F(ExpectGoldenPicture, FailsAndReportsWhatDiffers) {
  expectGoldenPicture(pictures(/*isUpdating=*/true), "card", white);
  EXPECT_THAT(failures("card", black), testing::AllOf(HasSubstr("card.png: 1 of 1 windows differ"),
                                                      HasSubstr(report_.page().string()),
                                                      HasSubstr("make golden-update FILTER=card")));
  EXPECT_EQ(contentsOf(folder_ / "card/old.png"), white);
  EXPECT_EQ(contentsOf(folder_ / "card/new.png"), black);
  EXPECT_EQ(decodedPng(contentsOf(folder_ / "card/difference.png")).width, 8U);
}

TEST_F(ExpectGoldenPicture, FailsForAnotherSize) {
  expectGoldenPicture(pictures(/*isUpdating=*/true), "card", white);
  EXPECT_THAT(failures("card", plainPng(0xFFFFFFFFU, 9)),
              HasSubstr("the size was 8 x 8 and is 9 x 8"));
}

TEST_F(ExpectGoldenPicture, FailsWithoutABlessedPictureAndShowsTheNewOne) {
  EXPECT_THAT(failures("card", white), HasSubstr("there is no blessed picture yet"));
  EXPECT_THAT(page(), HasSubstr("card/new.png"));
}

TEST_F(ExpectGoldenPicture, WhatLooksRightAgainLeavesTheReport) {
  expectGoldenPicture(pictures(/*isUpdating=*/true), "card", white);
  EXPECT_NE(failures("card", black), "");
  EXPECT_EQ(failures("card", white), "");
  EXPECT_FALSE(fs::exists(report_.page()));
}

TEST_F(ExpectGoldenPicture, BlessingLeavesTheReportToo) {
  EXPECT_NE(failures("card", black), "");
  expectGoldenPicture(pictures(/*isUpdating=*/true), "card", black);
  EXPECT_FALSE(fs::exists(report_.page()));
  EXPECT_EQ(failures("card", black), "");
}

}  // namespace
}  // namespace lanternfold
