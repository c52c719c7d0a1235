#include <gtest/gtest.h>

#include "NetBase/LiteralInterfaceNaming.h"

namespace lanternfold {
namespace {

TEST(LiteralInterfaceNaming, NameBelongsWhenItBeginsWithThePrefix) {
  const auto belongs = LiteralInterfaceNaming().matcher("en");
  EXPECT_TRUE(belongs("en0"));
  EXPECT_TRUE(belongs("en"));
  EXPECT_FALSE(belongs("e"));
  EXPECT_FALSE(belongs("eth0"));
  EXPECT_FALSE(belongs("EN0"));
  EXPECT_FALSE(belongs(""));
}

TEST(LiteralInterfaceNaming, EmptyPrefixTakesEveryName) {
  const auto belongs = LiteralInterfaceNaming().matcher("");
  EXPECT_TRUE(belongs("docker0"));
  EXPECT_TRUE(belongs(""));
}

TEST(LiteralInterfaceNaming, MatcherKeepsItsOwnPrefix) {
  std::function<bool(std::string_view)> belongs;
  {
    const std::string prefix = "a prefix longer than what a string keeps in itself";
    belongs = LiteralInterfaceNaming().matcher(prefix);
  }
  EXPECT_TRUE(belongs("a prefix longer than what a string keeps in itself, and more"));
}

}  // namespace
}  // namespace lanternfold
