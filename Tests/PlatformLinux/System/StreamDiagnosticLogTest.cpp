#include <array>
#include <fcntl.h>
#include <map>
#include <sstream>
#include <thread>
#include <unistd.h>

#include <climits>

#include "PlatformLinux/System/StreamDiagnosticLog.h"

namespace lanternfold {
namespace {

/// A temporary file as a stream, read back through a descriptor of its own.
class TemporaryStream {
 public:
  TemporaryStream() : stream_(std::tmpfile()) {}
  ~TemporaryStream() { std::fclose(stream_); }
  TemporaryStream(const TemporaryStream&) = delete;
  TemporaryStream& operator=(const TemporaryStream&) = delete;

  [[nodiscard]] std::FILE* get() { return stream_; }

  /// What has reached the kernel.
  [[nodiscard]] std::string written() const {
    std::string text;
    char block[4096];
    off_t offset = 0;
    ssize_t count = 0;
    while ((count = pread(fileno(stream_), block, sizeof block, offset)) > 0) {
      text.append(block, static_cast<std::size_t>(count));
      offset += count;
    }
    return text;
  }

 private:
  std::FILE* stream_;
};

TEST(StreamDiagnosticLogTest, LineIsWrittenAtOnceWithItsEnd) {
  TemporaryStream stream;
  StreamDiagnosticLog log(stream.get());

  log.line("Failed to save storage: no space left");
  EXPECT_EQ(stream.written(), "Failed to save storage: no space left\n");
  log.line("");
  EXPECT_EQ(stream.written(), "Failed to save storage: no space left\n\n");
}

TEST(StreamDiagnosticLogTest, OneCallIsOneLine) {
  TemporaryStream stream;
  StreamDiagnosticLog(stream.get()).line("first\nsecond\r\nthird");
  EXPECT_EQ(stream.written(), "first second  third\n");
}

TEST(StreamDiagnosticLogTest, ControlCharactersReachNoTerminal) {
  TemporaryStream stream;
  StreamDiagnosticLog(stream.get()).line("a\x1b[31m\x07\x7f\tb \xc2\x9b!");
  EXPECT_EQ(stream.written(), "a\\x1b[31m\\x07\\x7f\\x09b \\xc2\\x9b!\n");
}

TEST(StreamDiagnosticLogTest, OtherTextIsWrittenAsItIs) {
  TemporaryStream stream;
  StreamDiagnosticLog(stream.get())
      .line(
          "\"/data/Gr\xc3\xb6\xc3\x9f"
          "e\" \\x1b \xc2\xb5 \xc2");
  EXPECT_EQ(stream.written(),
            "\"/data/Gr\xc3\xb6\xc3\x9f"
            "e\" \\x1b \xc2\xb5 \xc2\n");
}

TEST(StreamDiagnosticLogTest, TextIsNotAFormat) {
  TemporaryStream stream;
  StreamDiagnosticLog(stream.get()).line("100%n %s");
  EXPECT_EQ(stream.written(), "100%n %s\n");
}

TEST(StreamDiagnosticLogTest, LinesOfSeveralThreadsDoNotMix) {
  TemporaryStream stream;
  StreamDiagnosticLog log(stream.get());
  constexpr int linesEach = 200;
  std::vector<std::thread> threads;
  for (const char letter : {'a', 'b', 'c', 'd'}) {
    threads.emplace_back([&log, letter] {
      for (int count = 0; count < linesEach; ++count) log.line(std::string(3000, letter));
    });
  }
  for (std::thread& thread : threads) thread.join();

  std::map<std::string, int> lines;
  std::istringstream text(stream.written());
  for (std::string line; std::getline(text, line);) ++lines[line];
  EXPECT_EQ(lines.size(), 4u);
  for (const char letter : {'a', 'b', 'c', 'd'}) {
    EXPECT_EQ(lines[std::string(3000, letter)], linesEach);
  }
}

TEST(StreamDiagnosticLogTest, StreamThatTakesNothingLosesTheLine) {
  std::FILE* full = std::fopen("/dev/full", "w");
  ASSERT_NE(full, nullptr);
  StreamDiagnosticLog log(full);
  log.line("lost");
  log.line("lost too");
  std::fclose(full);
}

/// A pipe that nobody reads unless asked to.
class UnreadPipe {
 public:
  UnreadPipe() {
    if (::pipe(ends_.data()) == 0) stream_ = ::fdopen(ends_[1], "w");
  }
  ~UnreadPipe() {
    std::fclose(stream_);
    ::close(ends_[0]);
  }
  UnreadPipe(const UnreadPipe&) = delete;
  UnreadPipe& operator=(const UnreadPipe&) = delete;

  [[nodiscard]] std::FILE* get() { return stream_; }

  /// Takes what is there out of the pipe.
  std::string read() {
    ::fcntl(ends_[0], F_SETFL, O_NONBLOCK);
    std::string text;
    char block[4096];
    ssize_t count = 0;
    while ((count = ::read(ends_[0], block, sizeof block)) > 0) {
      text.append(block, static_cast<std::size_t>(count));
    }
    return text;
  }

 private:
  std::array<int, 2> ends_{};
  std::FILE* stream_ = nullptr;
};

TEST(StreamDiagnosticLogTest, PipeThatNobodyReadsLosesLinesAndHoldsNobodyUp) {
  UnreadPipe pipe;
  StreamDiagnosticLog log(pipe.get(), StreamDiagnosticLog::WhenFull::loseLine);
  const std::string line(1000, 'x');
  for (int count = 0; count < 1000; ++count) log.line(line);

  std::istringstream text(pipe.read());
  int kept = 0;
  for (std::string each; std::getline(text, each); ++kept) EXPECT_EQ(each, line);
  EXPECT_GT(kept, 10);
  EXPECT_LT(kept, 1000);
  log.line("somebody reads again");
  EXPECT_EQ(pipe.read(), "somebody reads again\n");
}

TEST(StreamDiagnosticLogTest, WhoeverBoundsTheFileIsCalledAfterEachLine) {
  UnreadPipe pipe;
  StreamDiagnosticLog log(pipe.get());
  log.line("one");
  std::string before;
  log.setAfterLine([&] { before += pipe.read(); });
  log.line("two");
  EXPECT_EQ(before, "one\ntwo\n");
}

TEST(StreamDiagnosticLogTest, LineThatIsLongerThanAPieceOfAPipeLosesItsEnd) {
  UnreadPipe pipe;
  StreamDiagnosticLog log(pipe.get(), StreamDiagnosticLog::WhenFull::loseLine);
  for (int count = 0; count < 100; ++count) log.line(std::string(1'000'000, 'x'));
  std::istringstream text(pipe.read());
  for (std::string each; std::getline(text, each);) EXPECT_EQ(each.size(), PIPE_BUF - 1U);
}

}  // namespace
}  // namespace lanternfold
