// Lines of diagnostics that are said once.
#include <thread>

#include <gtest/gtest.h>

#include "Tests/Support/RecordingDiagnosticLog.h"
#include "Wiring/DistinctDiagnosticLog.h"

namespace lanternfold {
namespace {

class DistinctDiagnosticLogTest : public testing::Test {
 protected:
  RecordingDiagnosticLog lines_;
  DistinctDiagnosticLog log_{lines_};
};

TEST_F(DistinctDiagnosticLogTest, WritesWhatIsNewInItsOrder) {
  for (const char* text : {"a", "b", "a", "", "c", "b", ""}) log_.line(text);
  EXPECT_EQ(lines_.lines(), (std::vector<std::string>{"a", "b", "", "c"}));
}

TEST_F(DistinctDiagnosticLogTest, RemembersSoManyLinesAndWritesWhatComesLaterEachTime) {
  for (std::size_t number = 0; number < DistinctDiagnosticLog::mostRemembered; ++number) {
    log_.line("line " + std::to_string(number));
  }
  log_.line("one more");
  log_.line("one more");
  log_.line("line 0");
  EXPECT_EQ(lines_.lines().size(), DistinctDiagnosticLog::mostRemembered + 2);
}

TEST_F(DistinctDiagnosticLogTest, TakesLinesOfSeveralThreads) {
  const auto write = [this] {
    for (int number = 0; number < 100; ++number) log_.line("line " + std::to_string(number));
  };
  std::thread other(write);
  write();
  other.join();
  EXPECT_EQ(lines_.lines().size(), 100U);
}

}  // namespace
}  // namespace lanternfold
