// Answers that are too long, in every form they can come in, are refused as soon as that is known.
#include <array>
#include <cstdio>
#include <thread>

#include "Tests/PlatformLinux/Url/ScriptedServer.h"
#include "Tests/PlatformLinux/Url/UrlWorld.h"

namespace lanternfold::test {
namespace {

const std::string refused = "error -1103";
constexpr std::size_t tenMegabytes = 10'000'000;

std::string compressed(const std::string& command) {
  std::FILE* pipe = popen((command + " | gzip -9").c_str(), "r");
  if (pipe == nullptr) return {};
  std::string bytes;
  std::array<char, 65536> buffer{};
  while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), pipe)) {
    bytes.append(buffer.data(), count);
  }
  EXPECT_EQ(pclose(pipe), 0) << command;
  return bytes;
}

std::string compressedZeros(std::size_t count) {
  return compressed("head -c " + std::to_string(count) + " /dev/zero");
}

std::string chunked(const std::string& body) {
  std::array<char, 32> size{};
  std::snprintf(size.data(), size.size(), "%zx\r\n", body.size());
  return "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" + std::string(size.data()) + body +
         "\r\n0\r\n\r\n";
}

class UrlBoundsInNamespace : public testing::Test {
 protected:
  void SetUp() override { OPEN_URL_WORLD(world_); }

  /// The first twenty bytes say enough.
  std::string answerTo(const std::string& bytes) {
    const ScriptedServer server(answering(bytes));
    return world_.fetch(server.url()).substr(0, 20);
  }
  /// Sends the beginning, then the rest over and over.
  std::string answerToEndless(const std::string& beginning, const std::string& rest) {
    const ScriptedServer server([&](ServerConnection& connection) {
      static_cast<void>(connection.readRequest());
      if (!connection.send(beginning)) return;
      while (connection.send(rest)) {
      }
    });
    return world_.fetch(server.url()).substr(0, 20);
  }

  const std::string longest_ = std::string(longestUrlAnswerBytes, 'x');
  UrlWorld world_;
};

TEST_F(UrlBoundsInNamespace, AnAnswerOf64KiBIsTakenAndOneByteMoreIsNot) {
  const std::string taken = "answer: xxxxxxxxxxxx";
  EXPECT_EQ(answerTo(httpAnswer(longest_)), taken);
  EXPECT_EQ(answerTo(httpAnswer(longest_ + "x")), refused);
  EXPECT_EQ(answerTo(chunked(longest_)), taken);
  EXPECT_EQ(answerTo(chunked(longest_ + "x")), refused);
  EXPECT_EQ(answerTo("HTTP/1.0 200 OK\r\n\r\n" + longest_), taken);
  EXPECT_EQ(answerTo("HTTP/1.0 200 OK\r\n\r\n" + longest_ + "x"), refused);
}

TEST_F(UrlBoundsInNamespace, NothingOfTheLongestAnswerIsLost) {
  const ScriptedServer server(answering(chunked(longest_)));
  EXPECT_EQ(world_.fetch(server.url()), "answer: " + longest_);
}

TEST_F(UrlBoundsInNamespace, TenMegabytesAreRefusedInEveryForm) {
  const std::string body(tenMegabytes, 'x');
  EXPECT_EQ(answerTo(httpAnswer(body)), refused);
  EXPECT_EQ(answerTo(chunked(body)), refused);
  EXPECT_EQ(answerTo("HTTP/1.1 200 OK\r\n\r\n" + body), refused);
}

TEST_F(UrlBoundsInNamespace, ALengthThatIsTooLongIsRefusedBeforeTheBodyComes) {
  const ScriptedServer server([](ServerConnection& connection) {
    static_cast<void>(connection.readRequest());
    connection.send("HTTP/1.1 200 OK\r\nContent-Length: 10000000\r\n\r\n");
    connection.waitUntilTheClientLeaves();
  });
  EXPECT_EQ(world_.fetch(server.url()), refused);
}

TEST_F(UrlBoundsInNamespace, AnEndlessBodyIsRefused) {
  EXPECT_EQ(answerToEndless("HTTP/1.1 200 OK\r\n\r\n", std::string(4096, 'x')), refused);
  EXPECT_EQ(answerToEndless("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n", "1\r\nx\r\n"),
            refused);
}

TEST_F(UrlBoundsInNamespace, ACompressedAnswerIsMeasuredByWhatItHolds) {
  const auto sent = [](std::size_t count) {
    return httpAnswer(compressedZeros(count), "200 OK", "Content-Encoding: gzip\r\n");
  };
  EXPECT_EQ(answerTo(sent(longestUrlAnswerBytes)), "answer: " + std::string(12, '\0'));
  EXPECT_EQ(answerTo(sent(longestUrlAnswerBytes + 1)), refused);
  EXPECT_EQ(answerTo(sent(tenMegabytes)), refused) << "about 10 kB on the wire";
}

TEST_F(UrlBoundsInNamespace, ACompressionThatNeverHoldsAnythingIsRefused) {
  const std::string gzipHeader("\x1f\x8b\x08\0\0\0\0\0\0\x03", 10);
  const std::string emptyBlock("\0\0\0\xff\xff", 5);
  std::string blocks;
  while (blocks.size() < 4096) blocks += emptyBlock;
  EXPECT_EQ(
      answerToEndless("HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\n\r\n" + gzipHeader, blocks),
      refused);
}

TEST_F(UrlBoundsInNamespace, TooManyHeaderLinesAreRefused) {
  EXPECT_EQ(answerToEndless("HTTP/1.1 200 OK\r\n", "A: " + std::string(100, 'b') + "\r\n"),
            refused);
}

TEST_F(UrlBoundsInNamespace, AHeaderLineThatIsTooLongIsRefused) {
  EXPECT_EQ(answerTo(httpAnswer("x", "200 OK", "A: " + std::string(50'000, 'b') + "\r\n")),
            refused);
  EXPECT_EQ(answerToEndless("HTTP/1.1 200 OK\r\nA: ", std::string(4096, 'b')), refused);
}

TEST_F(UrlBoundsInNamespace, InterimAnswersWithoutEndAreRefused) {
  EXPECT_EQ(answerToEndless("", "HTTP/1.1 103 Early Hints\r\nLink: <x>\r\n\r\n"), refused);
}

TEST_F(UrlBoundsInNamespace, TrailersWithoutEndAreRefused) {
  EXPECT_EQ(answerToEndless("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n",
                            "A: " + std::string(100, 'b') + "\r\n"),
            refused);
}

TEST_F(UrlBoundsInNamespace, TheBodyOfARedirectIsBoundedToo) {
  EXPECT_EQ(answerToEndless("HTTP/1.1 302 Found\r\nLocation: /\r\n\r\n", std::string(4096, 'x')),
            refused);
}

TEST_F(UrlBoundsInNamespace, ARefusedAnswerEndsItsConnection) {
  const ScriptedServer server([](ServerConnection& connection) {
    static_cast<void>(connection.readRequest());
    connection.send("HTTP/1.1 200 OK\r\nContent-Length: 10000000\r\n\r\n");
    connection.waitUntilTheClientLeaves();
  });
  EXPECT_EQ(world_.fetch(server.url()), refused);
  for (int tries = 0; tries < 1000 && server.open() > 0; ++tries) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  EXPECT_EQ(server.open(), 0);
}

}  // namespace
}  // namespace lanternfold::test
