// The claim to be the only one, and who has it.
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "PlatformLinux/System/FileClaim.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {
namespace {

class FileClaimTest : public testing::Test {
 protected:
  [[nodiscard]] auto claim() const { return FileClaim::claim(folder_ / "lock"); }
  [[nodiscard]] auto signature() const { return FileClaim::signature(folder_ / "lock"); }

  const TemporaryFolder folder_;
};

TEST_F(FileClaimTest, WhoFindsItClaimedLearnsByWhichProcess) {
  EXPECT_EQ(signature(), std::nullopt);
  const auto first = claim();
  ASSERT_TRUE(first && *first);
  EXPECT_EQ(signature(), std::nullopt) << "it has not been signed yet";
  (*first)->signWithProcess();
  const auto second = claim();
  ASSERT_TRUE(second);
  EXPECT_FALSE(*second);
  EXPECT_EQ(signature(), ::getpid());
}

TEST_F(FileClaimTest, ALongerSignatureOfAnotherOneLeavesNothingBehind) {
  folder_.write("lock", "99999999999\nand more");
  const auto claimed = claim();
  ASSERT_TRUE(claimed && *claimed);
  (*claimed)->signWithProcess();
  EXPECT_EQ(folder_.bytesOf("lock"), std::to_string(::getpid()) + "\n");
}

TEST_F(FileClaimTest, WhatIsNoSignatureIsNone) {
  for (const char* text : {"", "\n", "12", "12 \n", "-12\n", "0\n", "12\n3", "99999999999\n", "x\n",
                           "00000000000000000001\n"}) {
    folder_.write("lock", text);
    EXPECT_EQ(signature(), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace lanternfold
