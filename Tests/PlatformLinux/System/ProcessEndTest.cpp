// Waiting for processes that end, or do not.
#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "PlatformLinux/System/ProcessEnd.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

TEST(ProcessEndTest, AProcessThatStaysIsGivenUpAndOneThatEndsIsSeen) {
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    for (;;) ::pause();
  }
  EXPECT_FALSE(waitForEnd(child, 0ms));
  EXPECT_FALSE(waitForEnd(child, 20ms));
  (void)::kill(child, SIGKILL);
  EXPECT_TRUE(waitForEnd(child, 30s)) << "before it is reaped";
  EXPECT_EQ(::waitpid(child, nullptr, 0), child);
  EXPECT_TRUE(waitForEnd(child, 0ms)) << "nobody has the number any more";
}

}  // namespace
}  // namespace lanternfold
