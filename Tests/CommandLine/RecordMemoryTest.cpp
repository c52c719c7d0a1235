// `record` holds after a simulated year what it held after a month.
#include <ostream>
#include <streambuf>

#include <gtest/gtest.h>

#include "CommandLine/Program.h"
#include "Tests/CommandLine/FakeMachine.h"
#include "Tests/LiveAllocations/LiveAllocations.h"

namespace lanternfold {
namespace {

using std::chrono::hours;

/// Counts the lines and keeps nothing.
class LineCounter final : public std::streambuf {
 public:
  [[nodiscard]] std::size_t lines() const { return lines_; }

 protected:
  int_type overflow(int_type character) override {
    if (character == '\n') ++lines_;
    return traits_type::not_eof(character);
  }

 private:
  std::size_t lines_ = 0;
};

class RecordMemoryTest : public testing::TestWithParam<const char*> {
 protected:
  static constexpr hours month{30 * 24};

  RecordMemoryTest() {
    fake_.addEthernet("en0", {192, 168, 1, 20});
    fake_.mainLoop.interruptedAfter = 13 * month;
    passDay();
    noteAfter(month, atFirst_);
    noteAfter(12 * month, atLast_);
  }

  /// A little traffic, so that the class and with it the user's interval stay. The figures are as
  /// long at the end as at the beginning.
  void passDay() {
    fake_.kernel.setCounters("en0", {.recvBytes = received_ += 1'000, .sentBytes = 9});
    fake_.dispatch.mainQueue().after(hours(24), [this] { passDay(); });
  }
  void noteAfter(hours moment, LiveAllocations& noted) {
    // Between two samples.
    fake_.dispatch.mainQueue().after(moment + std::chrono::seconds(7),
                                     [&noted] { noted = liveAllocations(); });
  }

  FakeMachine fake_;
  std::uint64_t received_ = 10'000'000'000'000'000'000ULL;
  LiveAllocations atFirst_;
  LiveAllocations atLast_;
};

TEST_P(RecordMemoryTest, IsFlatOverAYear) {
  LineCounter counter;
  std::ostream output(&counter);
  std::ostream errors(nullptr);
  std::vector<std::string> arguments{"record", "--interval", "1200"};
  if (GetParam() == std::string_view("json")) arguments.emplace_back("--json");
  ASSERT_EQ(runProgram(arguments, {.output = output, .errors = errors},
                       [this](const MachineOptions&) -> const Machine& { return fake_.machine; }),
            ExitStatus::done);
  EXPECT_GT(counter.lines(), 10'000U);
  EXPECT_GT(atFirst_.blocks, 0);
  EXPECT_EQ(atLast_.blocks, atFirst_.blocks);
  EXPECT_EQ(atLast_.bytes, atFirst_.bytes);
  EXPECT_THAT(fake_.diagnostics.lines(), testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Forms, RecordMemoryTest, testing::Values("text", "json"),
                         [](const auto& form) { return std::string(form.param); });

}  // namespace
}  // namespace lanternfold
