// How much of an answer is kept, and what is refused.
#include "PlatformLinux/Url/BoundedAnswer.h"

namespace lanternfold {
namespace {

TEST(BoundedAnswerTest, PutsPiecesTogether) {
  BoundedAnswer answer;
  EXPECT_TRUE(answer.takeBody("one "));
  EXPECT_TRUE(answer.takeBody(""));
  EXPECT_TRUE(answer.takeBody("two"));
  EXPECT_EQ(answer.releaseBody(), "one two");
}

TEST(BoundedAnswerTest, TakesTheLongestBodyAndNotAByteMore) {
  BoundedAnswer answer;
  EXPECT_TRUE(answer.takeBody(std::string(longestUrlAnswerBytes - 1, 'x')));
  EXPECT_TRUE(answer.takeBody("x"));
  EXPECT_FALSE(answer.isRefused());
  EXPECT_FALSE(answer.takeBody("x"));
  EXPECT_TRUE(answer.isRefused());
}

TEST(BoundedAnswerTest, TakesTheLongestHeaderAndNotAByteMore) {
  BoundedAnswer answer;
  EXPECT_TRUE(answer.takeHeader(longestUrlHeaderBytes - 1));
  EXPECT_TRUE(answer.takeHeader(1));
  EXPECT_FALSE(answer.takeHeader(1));
  EXPECT_TRUE(answer.isRefused());
}

TEST(BoundedAnswerTest, WhatIsSentMayBeALittleLongerThanWhatItHolds) {
  BoundedAnswer answer;
  EXPECT_TRUE(answer.acceptsSentBody(longestUrlAnswerBytes + 1));
  EXPECT_TRUE(answer.acceptsSentBody(BoundedAnswer::longestSentBodyBytes));
  EXPECT_FALSE(answer.acceptsSentBody(BoundedAnswer::longestSentBodyBytes + 1));
}

TEST(BoundedAnswerTest, AfterARefusalNothingIsTaken) {
  BoundedAnswer answer;
  EXPECT_FALSE(answer.takeBody(std::string(longestUrlAnswerBytes + 1, 'x')));
  EXPECT_FALSE(answer.takeBody("x"));
  EXPECT_FALSE(answer.takeHeader(1));
  EXPECT_FALSE(answer.acceptsSentBody(1));
  EXPECT_EQ(answer.releaseBody(), "");
}

}  // namespace
}  // namespace lanternfold
