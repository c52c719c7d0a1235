#include <csignal>
#include <string_view>

#include <gtest/gtest.h>

#include "Support/FatalError.h"

namespace lanternfold {
namespace {

TEST(FatalErrorDeathTest, AbortsWithTheSentenceAndThePlace) {
  EXPECT_EXIT(fatalError("a rule was broken"), testing::KilledBySignal(SIGABRT),
              "^Fatal error: a rule was broken \\(.*FatalErrorTest\\.cpp:[0-9]+\\)\n$");
}

TEST(FatalErrorDeathTest, PrintsOnlyTheViewItWasGiven) {
  constexpr std::string_view whole = "short and the rest";
  EXPECT_DEATH(fatalError(whole.substr(0, 5)), "^Fatal error: short \\(");
}

TEST(FatalErrorDeathTest, OfWhatNobodyMayCallSaysWhoseItIs) {
  EXPECT_EXIT(fatalErrorAt("Room/Thing"), testing::KilledBySignal(SIGABRT),
              "^Fatal error \\(Room/Thing\\)\n$");
}

}  // namespace
}  // namespace lanternfold
