// The entry point of every test program. Death tests start a fresh process, so that they are safe
// beside threads that other tests of the same program have started.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

int main(int argumentCount, char** arguments) {
  testing::InitGoogleMock(&argumentCount, arguments);
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  return RUN_ALL_TESTS();
}
