// The fixture of Docs/formats is what an archive of every kind of node is, to the byte.
#include <cstddef>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <variant>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/ViewTree/ViewSamples.h"
#include "ViewTree/LayoutPass.h"
#include "ViewTree/ViewArchive.h"

namespace lanternfold {
namespace {

std::string contents(const std::string& name) {
  std::ifstream stream(std::string(LANTERNFOLD_SOURCE_DIR) + "/Docs/formats/" + name);
  return {std::istreambuf_iterator<char>(stream), {}};
}

View everything() {
  return vstack(HorizontalAlignment::leading, 5, viewsOfEveryKind())
      .background(linearGradient(Colour::white(0.4), Colour::named("End")), topLeading);
}

TEST(ViewArchiveFormat, IsThatOfTheFixture) {
  EXPECT_EQ(archiveJson(everything()) + "\n", contents("fixtures/view-archive.json"));
  EXPECT_EQ(viewOfArchive(contents("fixtures/view-archive.json")), everything());
}

TEST(ViewArchiveFormat, IsWrittenDownMemberByMember) {
  const std::string document = contents("view-archive.md");
  const std::string fixture = contents("fixtures/view-archive.json");
  const std::regex names(R"re("([A-Za-z]+)":)re");
  std::set<std::string> told;
  for (std::sregex_iterator name(fixture.begin(), fixture.end(), names), end; name != end; ++name) {
    told.insert((*name)[1].str());
  }
  const std::regex types(R"re("type":"([A-Za-z]+)")re");
  for (std::sregex_iterator type(fixture.begin(), fixture.end(), types), end; type != end; ++type) {
    told.insert((*type)[1].str());
  }
  EXPECT_EQ(std::variant_size_v<ViewNode>, 28U) << "a new kind of node has a row in the document";
  EXPECT_GT(told.size(), 50U);
  for (const std::string& name : told) {
    EXPECT_THAT(document, testing::HasSubstr('`' + name + '`'));
  }
}

TEST(ViewArchiveFormat, HasTheLimitsThatAreWrittenDown) {
  const std::string document = contents("view-archive.md");
  EXPECT_THAT(document, testing::HasSubstr("`version` is " + std::to_string(1)));
  for (const std::size_t limit : {deepestArchivedNode, mostRowSpacings, longestArchivedText / 1024,
                                  longestViewArchive / 1024 / 1024}) {
    EXPECT_THAT(document, testing::HasSubstr(' ' + std::to_string(limit) + ' '));
  }
  EXPECT_EQ(mostArchivedNodes, 10'000U);
  EXPECT_THAT(document, testing::HasSubstr("10,000 nodes"));
  EXPECT_EQ(mostLayoutSteps, 250'000U);
  EXPECT_THAT(document, testing::HasSubstr("250,000 steps"));
  EXPECT_EQ(mostGridColumns, 16U);
  EXPECT_THAT(document, testing::HasSubstr("1 to 16 |"));
  EXPECT_EQ(mostArchivedLines, 1000U);
  EXPECT_THAT(document, testing::HasSubstr("1 to 1,000"));
  EXPECT_EQ(largestArchivedLength, 100'000);
  EXPECT_THAT(document, testing::HasSubstr("100,000"));
}

}  // namespace
}  // namespace lanternfold
