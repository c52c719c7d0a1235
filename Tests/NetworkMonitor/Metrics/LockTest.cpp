// What is said of a lock that could not be taken or given up.
#include <gtest/gtest.h>

#include "NetworkMonitor/Metrics/Lock.h"

namespace lanternfold {
namespace {

using Case = LockError::Case;

TEST(LockErrorText, SaysWhatFailedAndWhy) {
  EXPECT_EQ(describe({.value = Case::lockFailed,
                      .underlying = std::make_error_code(std::errc::no_space_on_device)}),
            "the lock file could not be written: No space left on device; see whether its folder "
            "is there and can be written to");
  EXPECT_EQ(describe({.value = Case::lockFailed}),
            "the lock file could not be written; see whether its folder is there and can be "
            "written to");
  EXPECT_EQ(describe({.value = Case::unlockFailed,
                      .underlying = std::make_error_code(std::errc::permission_denied)}),
            "the lock file could not be removed: Permission denied; it lapses by itself");
  EXPECT_EQ(describe({.value = Case::lockTimeout}),
            "another program kept the lock for longer than was waited");
  EXPECT_EQ(describe({.value = Case::alreadyUnlocked}), "there was no lock file to remove");
}

}  // namespace
}  // namespace lanternfold
