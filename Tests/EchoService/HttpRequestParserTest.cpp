#include <gtest/gtest.h>

#include "EchoService/HttpHeaderRules.h"
#include "EchoService/HttpRequestParser.h"

namespace lanternfold {
namespace {

using namespace std::string_literals;

ParsedHttpRequest parsed(std::string_view bytes) {
  const auto result = parseHttpRequest(bytes);
  if (!result || !*result) {
    ADD_FAILURE() << (result ? "incomplete" : result.error().sentence) << ": " << bytes;
    return {};
  }
  return **result;
}

/// The status of the error; 200 for a request, 0 for the beginning of one.
int statusOf(std::string_view bytes) {
  const auto result = parseHttpRequest(bytes);
  if (!result) return result.error().status;
  return *result ? 200 : 0;
}

std::string withFields(const std::string& fields, const std::string& version = "HTTP/1.1") {
  return "GET / " + version + "\r\nHost: a\r\n" + fields + "\r\n";
}

const std::string usual =
    "GET /json/?fields=isp,query HTTP/1.1\r\nHost: 192.0.2.1:8080\r\nAccept: */*\r\n"
    "X-Forwarded-For:\t198.51.100.7, 10.0.0.1 \r\n\r\n";

TEST(HttpRequestParser, ReadsARequest) {
  const auto [request, consumed] = parsed(usual);
  EXPECT_EQ(request, (HttpRequest{.method = "GET",
                                  .path = "/json/",
                                  .query = "fields=isp,query",
                                  .fields = {{"host", "192.0.2.1:8080"},
                                             {"accept", "*/*"},
                                             {"x-forwarded-for", "198.51.100.7, 10.0.0.1"}},
                                  .keepAlive = true}));
  EXPECT_EQ(consumed, usual.size());
}

TEST(HttpRequestParser, NeedsMoreBytesAtEveryCut) {
  for (const std::string& request : {usual, "\r\n" + usual, "HEAD / HTTP/1.0\r\n\r\n"s,
                                     "OPTIONS * HTTP/1.1\r\nHost:\r\n\r\n"s}) {
    for (std::size_t length = 0; length < request.size(); ++length) {
      EXPECT_EQ(statusOf(std::string_view(request).substr(0, length)), 0) << length;
    }
    EXPECT_EQ(statusOf(request), 200);
  }
}

TEST(HttpRequestParser, LeavesTheNextRequestAlone) {
  const auto [request, consumed] = parsed(usual + "GARBAGE\r\r\n");
  EXPECT_EQ(consumed, usual.size());
  EXPECT_EQ(request.path, "/json/");
}

TEST(HttpRequestParser, SkipsOneEmptyLineBeforeTheRequest) {
  EXPECT_EQ(parsed("\r\n" + usual).consumedBytes, usual.size() + 2);
  EXPECT_EQ(statusOf("\r\n\r\n" + usual), 400);
}

TEST(HttpRequestParser, KeepsTheConnectionAsTheVersionAndTheClientWish) {
  const std::tuple<std::string, std::string, bool> cases[] = {
      {"HTTP/1.1", "", true},
      {"HTTP/1.1", "Connection: close\r\n", false},
      {"HTTP/1.1", "Connection: Keep-Alive\r\n", true},
      {"HTTP/1.1", "Connection: upgrade, CLOSE\r\n", false},
      {"HTTP/1.1", "Connection: x\r\nConnection: close\r\n", false},
      {"HTTP/1.1", "Connection: closed\r\n", true},
      {"HTTP/1.0", "", false},
      {"HTTP/1.0", "Connection: keep-alive\r\n", true},
      {"HTTP/1.0", "Connection: keep-alive, close\r\n", false},
      {"HTTP/1.7", "", true},
  };
  for (const auto& [version, fields, keepAlive] : cases) {
    EXPECT_EQ(parsed(withFields(fields, version)).request.keepAlive, keepAlive)
        << version << " " << fields;
  }
}

TEST(HttpRequestParser, TakesEveryFormOfTarget) {
  using Parts = std::tuple<std::string, std::string, std::optional<std::string>>;
  const Parts cases[] = {
      {"/", "/", std::nullopt},
      {"/?", "/", ""},
      {"/a?b?c=/d", "/a", "b?c=/d"},
      {"//a/../b", "//a/../b", std::nullopt},
      {"/%2e%00", "/%2e%00", std::nullopt},
      {"*", "*", std::nullopt},
      {"http://a/json/?f", "/json/", "f"},
      {"HTTPS://a:8/x", "/x", std::nullopt},
      {"http://a", "/", std::nullopt},
      {"http://a?q", "/", "q"},
  };
  for (const auto& [target, path, query] : cases) {
    const auto request = parsed("GET " + target + " HTTP/1.1\r\nHost: a\r\n\r\n").request;
    EXPECT_EQ(request.path, path) << target;
    EXPECT_EQ(request.query, query) << target;
  }
  EXPECT_EQ(parsed("CONNECT a:443 HTTP/1.1\r\nHost: a\r\n\r\n").request.path, "a:443");
}

TEST(HttpRequestParser, RefusesRequestLinesThatAreNone) {
  for (const std::string& line : {""s,
                                  " "s,
                                  "GET"s,
                                  "GET /"s,
                                  "GET  HTTP/1.1"s,
                                  "GET / HTTP/1.1 "s,
                                  " GET / HTTP/1.1"s,
                                  "GET  / HTTP/1.1"s,
                                  "GET /  HTTP/1.1"s,
                                  "GET /a b HTTP/1.1"s,
                                  "GET\t/ HTTP/1.1"s,
                                  "G(T / HTTP/1.1"s,
                                  "GET / http/1.1"s,
                                  "GET / HTTP/1.1x"s,
                                  "GET / HTTP/11"s,
                                  "GET / HTTP/1.10"s,
                                  "GET / HTTP/a.1"s,
                                  "GET / HTTPS/1.1"s,
                                  "GET / "s,
                                  "GET json HTTP/1.1"s,
                                  "GET http:// HTTP/1.1"s,
                                  "GET http:///x HTTP/1.1"s,
                                  "GET ftp://a/ HTTP/1.1"s,
                                  "GET a:80 HTTP/1.1"s,
                                  "GET /#f HTTP/1.1"s,
                                  "GET /\x7F HTTP/1.1"s,
                                  "GET /\xC3\xA9 HTTP/1.1"s,
                                  "GET /\x01 HTTP/1.1"s,
                                  "G\xC3\xA9T / HTTP/1.1"s}) {
    // A first empty line is skipped, so this is what comes second.
    EXPECT_EQ(statusOf("\r\n" + line + "\r\nHost: a\r\n\r\n"), 400) << line;
  }
  EXPECT_EQ(statusOf("PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n"), 505);
  EXPECT_EQ(statusOf("GET / HTTP/0.9\r\n\r\n"), 505);
}

TEST(HttpRequestParser, RefusesOtherLineEndsAtOnce) {
  EXPECT_EQ(statusOf("GET / HTTP/1.1\n"), 400);
  EXPECT_EQ(statusOf("GET / HTTP/1.1\rX"), 400);
  EXPECT_EQ(statusOf("GET / HTTP/1.1\r\nHost: a\n\r\n"), 400);
  EXPECT_EQ(statusOf("GET / HTTP/1.1\r\nHost: a\r\r\n\r\n"), 400);
  EXPECT_EQ(statusOf("GET / HTTP/1.1\r\nHost: a\r\n\n"), 400);
  EXPECT_EQ(statusOf("GET /\0 HTTP/1.1\r\n"s), 400);
}

TEST(HttpRequestParser, RefusesAHandshakeOfTlsAtOnce) {
  EXPECT_EQ(statusOf("\x16\x03\x01\x02\x00\x01\x00\x01\xFC\x03\x03"s), 400);
}

TEST(HttpRequestParser, RefusesFieldsThatAreNone) {
  for (const std::string& field :
       {"no colon"s, ": nameless"s, "Name : value"s, "Na me: value"s, "N\xC3\xA9: value"s,
        " Folded: value"s, "\tFolded: value"s, "A: b\x01"s, "A: b\x7F"s, "A: \x1B[31m"s}) {
    EXPECT_EQ(statusOf(withFields(field + "\r\n")), 400) << field;
  }
  EXPECT_EQ(statusOf(withFields("A: b\r\n folded\r\n")), 400);
}

TEST(HttpRequestParser, TakesEveryFieldThatIsOne) {
  const auto request =
      parsed(withFields("Empty:\r\nSpaces:  a b\t \r\n!#$%&'*+-.^_`|~09aZ: x\r\nLatin: \xE9\r\n"))
          .request;
  EXPECT_EQ(request.fields, (std::vector<HttpHeaderField>{{"host", "a"},
                                                          {"empty", ""},
                                                          {"spaces", "a b"},
                                                          {"!#$%&'*+-.^_`|~09az", "x"},
                                                          {"latin", "\xE9"}}));
}

TEST(HttpRequestParser, WantsOneHost) {
  EXPECT_EQ(statusOf("GET / HTTP/1.1\r\n\r\n"), 400);
  EXPECT_EQ(statusOf("GET / HTTP/1.0\r\n\r\n"), 200);
  EXPECT_EQ(statusOf("GET / HTTP/1.1\r\nHost: a\r\nhost: a\r\n\r\n"), 400);
  EXPECT_EQ(statusOf("GET / HTTP/1.0\r\nHost: a\r\nHost: b\r\n\r\n"), 400);
  for (const char* host : {"a b", "a,b", "a/b", "user@a", "\"a\"", "a\\b", "<a>", "a?"}) {
    EXPECT_EQ(statusOf("GET / HTTP/1.1\r\nHost: "s + host + "\r\n\r\n"), 400) << host;
  }
  for (const char* host : {"", "echo.example", "192.0.2.1", "[2001:db8::1]:80", "a_b:1"}) {
    EXPECT_EQ(statusOf("GET / HTTP/1.1\r\nHost: "s + host + "\r\n\r\n"), 200) << host;
  }
}

TEST(HttpRequestParser, TakesNoBody) {
  const std::pair<const char*, int> cases[] = {
      {"Content-Length: 0\r\n", 200},
      {"Content-Length: 000\r\n", 200},
      {"Content-Length: 1\r\n", 413},
      {"Content-Length: 99999999999999999999999999\r\n", 413},
      {"Content-Length: -1\r\n", 400},
      {"Content-Length: +0\r\n", 400},
      {"Content-Length: 0x0\r\n", 400},
      {"Content-Length:\r\n", 400},
      {"Content-Length: 0, 0\r\n", 400},
      {"Content-Length: 0\r\nContent-Length: 0\r\n", 400},
      {"Transfer-Encoding: chunked\r\n", 411},
      {"Transfer-Encoding: Chunked\r\n", 411},
      {"Transfer-Encoding: gzip, chunked\r\n", 501},
      {"Transfer-Encoding: identity\r\n", 501},
      {"Transfer-Encoding:\r\n", 501},
      {"Transfer-Encoding: chunked\r\nTransfer-Encoding: chunked\r\n", 501},
      {"Transfer-Encoding: chunked\r\nContent-Length: 0\r\n", 400},
      {"Content-Length: 5\r\nTransfer-Encoding: chunked\r\n", 400},
  };
  for (const auto& [fields, status] : cases) {
    EXPECT_EQ(statusOf(withFields(fields)), status) << fields;
    EXPECT_EQ(statusOf(withFields(fields, "HTTP/1.0")), status) << fields;
  }
}

TEST(HttpRequestParser, MeetsNoExpectations) {
  EXPECT_EQ(statusOf(withFields("Expect: 100-continue\r\n")), 200);
  EXPECT_EQ(statusOf(withFields("Expect: 100-Continue\r\nContent-Length: 3\r\n")), 413);
  EXPECT_EQ(statusOf(withFields("Expect: miracles\r\n")), 417);
}

TEST(HttpRequestParser, BoundsTheRequestLine) {
  const std::string fixed = "GET / HTTP/1.1";
  const auto line = [&](std::size_t size) {
    return "GET /" + std::string(size - fixed.size(), 'a') + " HTTP/1.1";
  };
  const std::string rest = "\r\nHost: a\r\n\r\n";
  EXPECT_EQ(statusOf(line(longestHttpRequestLineBytes) + rest), 200);
  EXPECT_EQ(statusOf(line(longestHttpRequestLineBytes) + "\r"), 0);
  EXPECT_EQ(statusOf(line(longestHttpRequestLineBytes + 1) + rest), 414);
  EXPECT_EQ(statusOf(std::string(longestHttpRequestLineBytes, 'a')), 0);
  EXPECT_EQ(statusOf(std::string(longestHttpRequestLineBytes + 2, 'a')), 414);
  EXPECT_EQ(statusOf(std::string(1'000'000, 'a')), 414);
}

TEST(HttpRequestParser, BoundsTheHeader) {
  const std::string begin = "GET / HTTP/1.1\r\nHost: a\r\nA: ";
  const std::string end = "\r\n\r\n";
  const std::string fitting(longestHttpRequestBytes - begin.size() - end.size(), 'a');
  EXPECT_EQ(statusOf(begin + fitting + end), 200);
  EXPECT_EQ(statusOf(begin + fitting + "a" + end), 431);
  EXPECT_EQ(statusOf(begin + std::string(1'000'000, 'a')), 431);
}

TEST(HttpRequestParser, BoundsTheNumberOfFields) {
  std::string fields;
  for (std::size_t count = 1; count < mostHttpHeaderFields; ++count) fields += "A: b\r\n";
  EXPECT_EQ(statusOf(withFields(fields)), 200);
  EXPECT_EQ(statusOf(withFields(fields + "A: b\r\n")), 431);
}

/// Otherwise the answer would depend on how the network cuts the bytes.
TEST(HttpRequestParser, SaysTheSameOfABeginningWhateverFollows) {
  const std::string inputs[] = {
      usual + usual,
      "GET /\n",
      "GET / HTTP/2.0\r\nHost: a\r\n\r\n",
      withFields("A : b\r\n"),
      withFields("Transfer-Encoding: chunked\r\n") + "0\r\n\r\n",
      "GET /" + std::string(longestHttpRequestLineBytes, 'a') + " HTTP/1.1\r\n",
      withFields("A: " + std::string(longestHttpRequestBytes, 'a') + "\r\n")};
  for (const std::string& input : inputs) {
    int status = 0;
    for (std::size_t length = 0; length <= input.size(); ++length) {
      const int now = statusOf(std::string_view(input).substr(0, length));
      if (status != 0) {
        ASSERT_EQ(now, status) << length << " of " << input;
      }
      status = now;
    }
    EXPECT_NE(status, 0) << input;
  }
}

TEST(HttpListItems, JoinsFieldsAndTrimsItems) {
  const std::vector<HttpHeaderField> fields{
      {"via", "x"}, {"list", "a, b\t ,,c"}, {"other", "d"}, {"list", ""}, {"list", "e,"}};
  EXPECT_EQ(httpListItems(fields, "list"),
            (std::vector<std::string_view>{"a", "b", "", "c", "", "e", ""}));
  EXPECT_TRUE(httpListItems(fields, "absent").empty());
}

}  // namespace
}  // namespace lanternfold
