// What every diagnostic log keeps to, that on a stream and the one that records.
#include <cstdio>
#include <thread>

#include <gtest/gtest.h>

#include "PlatformLinux/System/StreamDiagnosticLog.h"
#include "Tests/Support/RecordingDiagnosticLog.h"

namespace lanternfold::test {
namespace {

class StreamLogWorld {
 public:
  ~StreamLogWorld() { std::fclose(stream_); }

  [[nodiscard]] DiagnosticLog& log() { return log_; }
  [[nodiscard]] std::vector<std::string> lines() {
    std::rewind(stream_);
    std::vector<std::string> lines(1);
    for (int byte = std::fgetc(stream_); byte != EOF; byte = std::fgetc(stream_)) {
      if (byte == '\n') {
        lines.emplace_back();
      } else {
        lines.back() += static_cast<char>(byte);
      }
    }
    lines.pop_back();
    return lines;
  }

 private:
  std::FILE* stream_ = std::tmpfile();
  StreamDiagnosticLog log_{stream_};
};

class RecordingLogWorld {
 public:
  [[nodiscard]] DiagnosticLog& log() { return log_; }
  [[nodiscard]] std::vector<std::string> lines() { return log_.lines(); }

 private:
  RecordingDiagnosticLog log_;
};

template <typename World>
class DiagnosticLogContract : public testing::Test {
 protected:
  World world_;
};

using Worlds = testing::Types<StreamLogWorld, RecordingLogWorld>;
TYPED_TEST_SUITE(DiagnosticLogContract, Worlds);

TYPED_TEST(DiagnosticLogContract, LinesComeInTheOrderOfTheCalls) {
  this->world_.log().line("Undefined family.");
  this->world_.log().line("");
  this->world_.log().line("100%n %s");
  EXPECT_EQ(this->world_.lines(), (std::vector<std::string>{"Undefined family.", "", "100%n %s"}));
}

TYPED_TEST(DiagnosticLogContract, LinesOfSeveralThreadsAreAllThereAndWhole) {
  std::vector<std::thread> threads;
  for (const char letter : {'a', 'b', 'c'}) {
    threads.emplace_back([this, letter] {
      for (int count = 0; count < 50; ++count) this->world_.log().line(std::string(200, letter));
    });
  }
  for (std::thread& thread : threads) thread.join();
  const auto lines = this->world_.lines();
  EXPECT_EQ(lines.size(), 150U);
  for (const std::string& line : lines) EXPECT_EQ(line, std::string(200, line.front()));
}

}  // namespace
}  // namespace lanternfold::test
