// From a request and its peer to the answer, and to its bytes.
#include <gtest/gtest.h>

#include "EchoService/EchoResponder.h"
#include "EchoService/ForwardedClient.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

const IpAddress peer = parseIpAddress("198.51.100.7").value();

GeolocationTable table() {
  GeolocationTable result;
  result.insert(parseIpNetwork("198.51.100.0/24").value(),
                {.isp = "Example \"Telecom\"", .countryCode = "IT", .as = "AS64500 Example"});
  result.insert(parseIpNetwork("2001:db8::/32").value(), {.isp = "Six", .countryCode = "DE"});
  return result;
}

std::vector<IpNetwork> networks(std::initializer_list<const char*> texts) {
  std::vector<IpNetwork> result;
  for (const char* text : texts) result.push_back(parseIpNetwork(text).value());
  return result;
}

const EchoResponder responder(table(), networks({"127.0.0.1", "10.0.0.0/8", "fd00::/8"}));

HttpResponse get(const char* path, const std::optional<std::string>& query = {},
                 const IpAddress& from = peer) {
  return responder.respond({.method = "GET", .path = path, .query = query}, from);
}

TEST(EchoResponder, TellsThePeerItsAddress) {
  EXPECT_EQ(get("/lanternfold/ip.php"), (HttpResponse{200, R"({"ip":"198.51.100.7"})"}));
  EXPECT_EQ(get("/lanternfold/ip.php", "x=1").status, 200);
  EXPECT_EQ(get("/lanternfold/ip.php", {}, parseIpAddress("2001:db8::9").value()).body,
            R"({"ip":"2001:db8::9"})");
}

TEST(EchoResponder, ShowsAMappedAddressAsIPv4) {
  const IpAddress mapped = IPv6Bytes{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF, 198, 51, 100, 7};
  EXPECT_EQ(get("/lanternfold/ip.php", {}, mapped).body, R"({"ip":"198.51.100.7"})");
}

TEST(EchoResponder, TellsWhereThePeerIsFromTheTable) {
  const std::string answer =
      R"({"isp":"Example \"Telecom\"","query":"198.51.100.7","countryCode":"IT","as":"AS64500 Example"})";
  EXPECT_EQ(get("/json/"), (HttpResponse{200, answer}));
  EXPECT_EQ(get("/json/", "fields=isp,query,countryCode,as"), (HttpResponse{200, answer}));
  EXPECT_EQ(get("/json/", {}, parseIpAddress("2001:db8::9").value()).body,
            R"({"isp":"Six","query":"2001:db8::9","countryCode":"DE","as":""})");
}

TEST(EchoResponder, HasNoOtherFields) {
  for (const char* query : {"", "fields=isp", "fields=isp,query,countryCode,as,city", "lang=de"}) {
    EXPECT_EQ(get("/json/", query).status, 400) << query;
  }
}

TEST(EchoResponder, OfAPeerThatTheTableDoesNotKnowItTellsTheAddressAlone) {
  EXPECT_EQ(get("/json/", {}, parseIpAddress("203.0.113.9").value()),
            (HttpResponse{200, R"({"isp":"","query":"203.0.113.9","countryCode":"","as":""})"}));
}

TEST(EchoResponder, AnswersTheDiagnosticPing) {
  EXPECT_EQ(get("/lanternfold/sentinel.php"), (HttpResponse{200, R"({"status":"ok"})"}));
  EXPECT_EQ(get("/lanternfold/sentinel.php", "deviceId=1&simulator=false&mode=release").status,
            200);
}

TEST(EchoResponder, HasNothingElse) {
  for (const char* path : {"/", "*", "/json", "/json/192.0.2.1", "/JSON/", "/lanternfold/ip.php/",
                           "/lanternfold//ip.php", "/lanternfold/ip%2Ephp", "/lanternfold/../json/",
                           "//json/", "/etc/passwd"}) {
    EXPECT_EQ(get(path).status, 404) << path;
  }
}

TEST(EchoResponder, AnswersGetAndHeadOnly) {
  for (const char* method : {"POST", "PUT", "DELETE", "OPTIONS", "CONNECT", "TRACE", "get", "X"}) {
    EXPECT_EQ(responder.respond({.method = method, .path = "/json/"}, peer).status, 405) << method;
  }
  EXPECT_EQ(responder.respond({.method = "HEAD", .path = "/lanternfold/ip.php"}, peer).status, 200);
}

TEST(EchoResponder, BelievesTheProxyForEveryAnswer) {
  const HttpRequest request{.method = "GET",
                            .path = "/lanternfold/ip.php",
                            .fields = {{"x-forwarded-for", "2001:db8::5"}}};
  const IpAddress proxy = parseIpAddress("127.0.0.1").value();
  EXPECT_EQ(responder.respond(request, proxy).body, R"({"ip":"2001:db8::5"})");
  HttpRequest where = request;
  where.path = "/json/";
  EXPECT_EQ(responder.respond(where, proxy).body,
            R"({"isp":"Six","query":"2001:db8::5","countryCode":"DE","as":""})");
  where.fields = {{"x-forwarded-for", "nobody"}};
  EXPECT_EQ(responder.respond(where, proxy).status, 400);
}

/// Whose request it is, by the values of X-Forwarded-For; "error" when that is unknown.
std::string clientOf(const char* from, const std::vector<const char*>& values) {
  std::vector<HttpHeaderField> fields{{"host", "a"}};
  for (const char* value : values) fields.push_back({"x-forwarded-for", value});
  const auto trusted = networks({"127.0.0.1", "10.0.0.0/8", "fd00::/8"});
  const auto client = forwardedClient(parseIpAddress(from).value(), fields, trusted);
  return client ? ipAddressText(*client) : "error";
}

TEST(ForwardedClient, AnUntrustedPeerSpeaksForItself) {
  EXPECT_EQ(clientOf("198.51.100.7", {"203.0.113.9"}), "198.51.100.7");
  EXPECT_EQ(clientOf("198.51.100.7", {"127.0.0.1", "garbage"}), "198.51.100.7");
}

TEST(ForwardedClient, ATrustedPeerWithoutTheFieldSpeaksForItself) {
  EXPECT_EQ(clientOf("127.0.0.1", {}), "127.0.0.1");
  EXPECT_EQ(clientOf("127.0.0.1", {""}), "127.0.0.1");
  EXPECT_EQ(clientOf("127.0.0.1", {" , ,"}), "127.0.0.1");
}

TEST(ForwardedClient, TheLastAddressThatIsNoProxyCounts) {
  EXPECT_EQ(clientOf("127.0.0.1", {"203.0.113.9"}), "203.0.113.9");
  EXPECT_EQ(clientOf("127.0.0.1", {"203.0.113.9, 10.1.2.3"}), "203.0.113.9");
  EXPECT_EQ(clientOf("127.0.0.1", {"203.0.113.9", "10.1.2.3,fd00::1"}), "203.0.113.9");
  EXPECT_EQ(clientOf("fd12::1", {"2001:db8::1"}), "2001:db8::1");
}

TEST(ForwardedClient, WhatTheClientItselfSentDoesNotCount) {
  EXPECT_EQ(clientOf("127.0.0.1", {"192.0.2.66, 203.0.113.9"}), "203.0.113.9");
  EXPECT_EQ(clientOf("127.0.0.1", {"192.0.2.66", "203.0.113.9"}), "203.0.113.9");
  EXPECT_EQ(clientOf("127.0.0.1", {"garbage, 203.0.113.9, 10.0.0.1"}), "203.0.113.9");
}

TEST(ForwardedClient, TheFirstCountsWhenAllAreProxies) {
  EXPECT_EQ(clientOf("127.0.0.1", {"10.0.0.1, 10.0.0.2"}), "10.0.0.1");
}

TEST(ForwardedClient, AnAddressMayHaveAPort) {
  EXPECT_EQ(clientOf("127.0.0.1", {"203.0.113.9:4711"}), "203.0.113.9");
  EXPECT_EQ(clientOf("127.0.0.1", {"[2001:db8::1]"}), "2001:db8::1");
  EXPECT_EQ(clientOf("127.0.0.1", {"[2001:db8::1]:4711"}), "2001:db8::1");
  EXPECT_EQ(clientOf("127.0.0.1", {"::ffff:203.0.113.9"}), "203.0.113.9");
  EXPECT_EQ(clientOf("127.0.0.1", {"[::ffff:203.0.113.9]:1"}), "203.0.113.9");
}

TEST(ForwardedClient, AnAddressThatCannotBeReadIsAnError) {
  for (const char* value : {"unknown", "_hidden", "203.0.113.9:x", "203.0.113.9:", "[2001:db8::1",
                            "203.0.113.999", "\"203.0.113.9\"", "203.0.113.9 10.0.0.1"}) {
    EXPECT_EQ(clientOf("127.0.0.1", {value}), "error") << value;
  }
  EXPECT_EQ(clientOf("127.0.0.1", {"203.0.113.9, unknown, 10.0.0.1"}), "error");
}

TEST(HttpResponse, ComesAsBytes) {
  const auto moment = std::chrono::system_clock::time_point(784111777s);
  EXPECT_EQ(encodeHttpResponse({200, "{}"}, HttpBody::sent, AfterResponse::keepAlive, moment),
            "HTTP/1.1 200 OK\r\nDate: Sun, 06 Nov 1994 08:49:37 GMT\r\n"
            "Content-Type: application/json\r\nContent-Length: 2\r\nCache-Control: no-store\r\n"
            "X-Content-Type-Options: nosniff\r\nConnection: keep-alive\r\n\r\n{}");
}

TEST(HttpResponse, OfAHeadHasTheLengthOfTheBodyThatIsLeftOut) {
  const std::string bytes =
      encodeHttpResponse({200, "{\"a\":1}"}, HttpBody::leftOut, AfterResponse::close, {});
  EXPECT_THAT(bytes, testing::HasSubstr("Content-Length: 7\r\n"));
  EXPECT_THAT(bytes, testing::EndsWith("Connection: close\r\n\r\n"));
}

TEST(HttpResponse, SaysWhatElseBelongsToItsStatus) {
  const auto bytes = [](int status) {
    return encodeHttpResponse(errorResponse(status, "no"), HttpBody::sent, AfterResponse::close,
                              {});
  };
  EXPECT_THAT(bytes(405), testing::HasSubstr("\r\nAllow: GET, HEAD\r\n"));
  EXPECT_THAT(bytes(503), testing::HasSubstr("\r\nRetry-After: 1\r\n"));
  for (const int status : {400, 404, 405, 408, 411, 413, 414, 417, 431, 501, 503, 505}) {
    EXPECT_TRUE(bytes(status).starts_with("HTTP/1.1 " + std::to_string(status) + " "));
    EXPECT_THAT(bytes(status), testing::EndsWith("\r\n\r\n{\"error\":\"no\"}"));
  }
}

TEST(HttpResponse, DatesAreInUtcAndInEnglish) {
  using std::chrono::system_clock;
  EXPECT_EQ(httpDateText(system_clock::time_point(0s)), "Thu, 01 Jan 1970 00:00:00 GMT");
  EXPECT_EQ(httpDateText(system_clock::time_point(1709251199s + 999ms)),
            "Thu, 29 Feb 2024 23:59:59 GMT");
}

}  // namespace
}  // namespace lanternfold
