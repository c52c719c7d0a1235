#include <sys/resource.h>
#include <system_error>
#include <unistd.h>

#include <gtest/gtest.h>

#include "PlatformLinux/System/FileDescriptor.h"
#include "Wiring/FileDescriptorLimit.h"

namespace lanternfold {
namespace {

class FileDescriptorLimitTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before_), 0);
    const rlimit few{.rlim_cur = 64, .rlim_max = before_.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
    for (int next = ::dup(STDERR_FILENO); next >= 0; next = ::dup(STDERR_FILENO)) {
      taken_.emplace_back(next);
    }
  }
  void TearDown() override { ::setrlimit(RLIMIT_NOFILE, &before_); }
  void leaveFree(std::size_t count) {
    ASSERT_GE(taken_.size(), count);
    while (count-- > 0) taken_.pop_back();
  }

  rlimit before_{};
  std::vector<FileDescriptor> taken_;
};

TEST_F(FileDescriptorLimitTest, EnoughAreGivenBack) {
  leaveFree(16);
  requireFreeDescriptors(16);
  requireFreeDescriptors(16);
}

TEST_F(FileDescriptorLimitTest, TooFewAreAnErrorBeforeAnythingIsOpened) {
  leaveFree(15);
  try {
    requireFreeDescriptors(16);
    FAIL() << "with 15 descriptors";
  } catch (const std::system_error& error) {
    EXPECT_EQ(error.code(), std::errc::too_many_files_open);
    EXPECT_THAT(error.what(), testing::HasSubstr("16 files"));
  }
}

}  // namespace
}  // namespace lanternfold
