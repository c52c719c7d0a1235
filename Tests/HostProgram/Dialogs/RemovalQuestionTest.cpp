// What a user is asked before a widget goes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "HostProgram/Dialogs/RemovalQuestion.h"
#include "Tests/Support/BracketingStringTable.h"

namespace lanternfold {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::SizeIs;

TEST(RemovalQuestionTest, TheAnswerThatRemovesIsThatOfTheEnterKey) {
  const Question question =
      removalQuestion({.widget = "Internet, Medium"}, BracketingStringTable());
  ASSERT_THAT(question.answers, SizeIs(2));
  EXPECT_THAT(question.answers.at(removingAnswer), HasSubstr("Remove"));
  EXPECT_EQ(question.defaultAnswer, removingAnswer);
  EXPECT_EQ(question.explanation, "Internet, Medium");
}

TEST(RemovalQuestionTest, OfTheLastOneItSaysHowToGetOthers) {
  EXPECT_THAT(
      removalQuestion({.widget = "Internet, Medium", .isLast = true}, BracketingStringTable())
          .explanation,
      AllOf(HasSubstr("Internet, Medium"), HasSubstr("start Lanternfold Widgets once more")));
}

}  // namespace
}  // namespace lanternfold
