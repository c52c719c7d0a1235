#include "NetworkMonitor/PublicInfo/AnswerTexts.h"
#include "NetworkMonitor/PublicInfo/PublicInfoResolverError.h"

namespace lanternfold {
namespace {

using Error = PublicInfoDecodingError;

constexpr std::string_view geolocation =
    R"({"isp":"Example Net","countryCode":"IT","as":"AS64496","query":"203.0.113.7"})";

std::expected<AnswerTexts, std::error_code> ipOf(std::string_view data) {
  return decodeAnswerTexts(data, {"ip"});
}
std::error_code errorOf(std::string_view data) {
  const auto texts = ipOf(data);
  return texts ? std::error_code() : texts.error();
}

TEST(AnswerTextsTest, GivesTheTextsOfTheMembers) {
  EXPECT_EQ(decodeAnswerTexts(geolocation, {"isp", "countryCode", "as", "query"}),
            (AnswerTexts{{"isp", "Example Net"},
                         {"countryCode", "IT"},
                         {"as", "AS64496"},
                         {"query", "203.0.113.7"}}));
}

TEST(AnswerTextsTest, OtherMembersAreNotLookedAt) {
  EXPECT_EQ(ipOf(R"({"status":[1,{"ip":2}],"ip":"192.0.2.7","x":null,"x":1})"),
            (AnswerTexts{{"ip", "192.0.2.7"}}));
}

TEST(AnswerTextsTest, AnAnswerCutAtAnyByteIsNoJson) {
  for (std::size_t length = 0; length < geolocation.size(); ++length) {
    EXPECT_EQ(errorOf(geolocation.substr(0, length)), Error::notJson) << length;
  }
}

TEST(AnswerTextsTest, WhatIsNoJsonIsRefused) {
  for (const std::string_view data :
       {std::string_view(), std::string_view("192.0.2.7"), std::string_view("<html></html>"),
        std::string_view(R"({"ip":"192.0.2.7"}x)"), std::string_view(R"({"ip":"192.0.2.7"}{})"),
        std::string_view(R"({'ip':'192.0.2.7'})"), std::string_view("{\"ip\":\"192.0.2.7\"}\0", 19),
        std::string_view("{\"ip\":\"192.0.2.7\"}\0x", 20), std::string_view("{\"ip\":\"\xFF\"}"),
        std::string_view("{\"ip\":\"\xC0\xAF\"}"), std::string_view("{\"ip\":\"a\nb\"}"),
        std::string_view(R"({"ip":"\ud800"})"), std::string_view(R"({"ip":NaN})")}) {
    EXPECT_EQ(errorOf(data), Error::notJson) << data;
  }
}

TEST(AnswerTextsTest, JsonOfAnotherKindIsRefused) {
  for (const char* data : {"[]", "\"192.0.2.7\"", "1", "null", "true", R"([{"ip":"192.0.2.7"}])"}) {
    EXPECT_EQ(errorOf(data), Error::notAnObject) << data;
  }
}

TEST(AnswerTextsTest, AMissingMemberIsNamed) {
  EXPECT_EQ(errorOf("{}"), decodingError(Error::missingMember, "ip"));
  EXPECT_EQ(errorOf(R"({"IP":"192.0.2.7","x":{"ip":"192.0.2.7"}})"),
            decodingError(Error::missingMember, "ip"));
  EXPECT_EQ(errorOf("{}").message(), "the answer lacks \"ip\"");
}

TEST(AnswerTextsTest, AMemberThatIsNoTextIsNamed) {
  for (const char* data : {R"({"ip":null})", R"({"ip":7})", R"({"ip":true})", R"({"ip":["a"]})",
                           R"({"ip":{"ip":"192.0.2.7"}})"}) {
    EXPECT_EQ(errorOf(data), decodingError(Error::notAString, "ip")) << data;
    EXPECT_EQ(errorOf(data).message(), "\"ip\" in the answer is not a text");
  }
}

TEST(AnswerTextsTest, AMemberThatStandsTwiceIsNamed) {
  EXPECT_EQ(errorOf(R"({"ip":"192.0.2.7","ip":"192.0.2.7"})"),
            decodingError(Error::duplicateMember, "ip"));
  EXPECT_EQ(errorOf(R"({"ip":"192.0.2.7","\u0069p":"192.0.2.8"})"),
            decodingError(Error::duplicateMember, "ip"));
}

TEST(AnswerTextsTest, TheSizeIsBounded) {
  const std::string start = R"({"ip":"192.0.2.7","x":")";
  const auto answerOf = [&start](std::size_t bytes) {
    return start + std::string(bytes - start.size() - 2, 'x') + "\"}";
  };
  EXPECT_EQ(errorOf(answerOf(longestAnswerBytes)), std::error_code());
  EXPECT_EQ(errorOf(answerOf(longestAnswerBytes + 1)), Error::tooLong);
  EXPECT_EQ(errorOf(answerOf(longestAnswerBytes + 1)).message(), "the answer is too long");
}

TEST(AnswerTextsTest, ATextIsBounded) {
  const auto answerOf = [](std::size_t bytes) {
    return R"({"ip":")" + std::string(bytes, 'x') + "\"}";
  };
  EXPECT_EQ(errorOf(answerOf(longestAnswerTextBytes)), std::error_code());
  EXPECT_EQ(errorOf(answerOf(longestAnswerTextBytes + 1)), decodingError(Error::tooLong, "ip"));
}

TEST(AnswerTextsTest, TheDepthIsBounded) {
  const auto answerOf = [](int levels) {
    const auto count = static_cast<std::size_t>(levels);
    return R"({"ip":"192.0.2.7","x":)" + std::string(count, '[') + std::string(count, ']') + "}";
  };
  EXPECT_EQ(errorOf(answerOf(deepestAnswer)), std::error_code());
  EXPECT_EQ(errorOf(answerOf(deepestAnswer + 1)), Error::tooDeep);
  EXPECT_EQ(errorOf(answerOf(30'000)), Error::tooDeep);
}

TEST(AnswerTextsTest, AnIPv4LiteralIsADottedQuad) {
  for (const char* text : {"203.0.113.7", "0.0.0.0", "255.255.255.255"}) {
    EXPECT_TRUE(isIPv4Literal(text)) << text;
  }
  for (const std::string_view text :
       {std::string_view(""), std::string_view("203.0.113"), std::string_view("203.0.113.7.1"),
        std::string_view("203.0.113.256"), std::string_view("203.0.113.07"), std::string_view("7"),
        std::string_view(" 203.0.113.7"), std::string_view("203.0.113.7\n"),
        std::string_view("203.0.113.7\0", 12), std::string_view("2001:db8::7"),
        std::string_view("0xCB.0.113.7"), std::string_view("host.example")}) {
    EXPECT_FALSE(isIPv4Literal(text)) << text;
  }
}

TEST(AnswerTextsTest, AnIPv6LiteralHasNoZoneAndNoBrackets) {
  for (const char* text : {"2001:db8::7", "::", "2001:DB8:0:0:1:0:0:EF", "::ffff:203.0.113.7"}) {
    EXPECT_TRUE(isIPv6Literal(text)) << text;
  }
  for (const std::string_view text :
       {std::string_view(""), std::string_view("203.0.113.7"), std::string_view("fe80::1%en0"),
        std::string_view("[2001:db8::7]"), std::string_view("2001:db8::7/64"),
        std::string_view("2001:db8::7\0", 12), std::string_view("2001:db8::7 "),
        std::string_view("1:2:3:4:5:6:7:8:9")}) {
    EXPECT_FALSE(isIPv6Literal(text)) << text;
  }
}

TEST(AnswerTextsTest, ACountryCodeIsTwoLetters) {
  for (const char* text : {"IT", "it", "ZZ"}) EXPECT_TRUE(isCountryCode(text)) << text;
  for (const char* text : {"", "I", "ITA", "I1", "\xC3\xBC", "I\n", "  "}) {
    EXPECT_FALSE(isCountryCode(text)) << text;
  }
}

TEST(PublicInfoResolverErrorTest, AFaultEqualsTheErrorsOfEveryMember) {
  const std::error_code error = decodingError(Error::notAString, "isp");
  EXPECT_EQ(error, decodingFault(Error::notAString));
  EXPECT_EQ(make_error_code(Error::notAString), decodingFault(Error::notAString));
  EXPECT_NE(error, decodingFault(Error::missingMember));
  EXPECT_NE(error, decodingError(Error::notAString, "as"));
  EXPECT_NE(error, make_error_code(Error::notAString));
}

TEST(PublicInfoResolverErrorTest, EveryErrorHasAMessage) {
  EXPECT_EQ(make_error_code(PublicInfoResolverError::generic).message(), "there was no answer");
  EXPECT_EQ(make_error_code(PublicInfoResolverError::timeout).message(),
            "the answer took too long");
  EXPECT_EQ(make_error_code(Error::notJson).message(), "the answer is not JSON");
  EXPECT_EQ(make_error_code(Error::notAnObject).message(), "the answer is not a JSON object");
  EXPECT_EQ(make_error_code(Error::missingMember).message(), "the answer lacks a member");
  EXPECT_EQ(decodingError(Error::missingMember, "countryCode").message(),
            "the answer lacks \"countryCode\"");
  EXPECT_EQ(decodingError(Error::notAnIPv4Address, "ip").message(),
            "\"ip\" in the answer is not an IPv4 address");
  EXPECT_EQ(std::error_code(99, publicInfoDecodingErrors()).message(), "error 99");
  EXPECT_EQ(std::error_code(901, publicInfoDecodingErrors()).message(), "error 901");
}

TEST(PublicInfoResolverErrorTest, CodesOfAnotherDomainAreOthers) {
  EXPECT_NE(make_error_code(PublicInfoResolverError::generic), make_error_code(Error::notJson));
}

TEST(PublicInfoResolverErrorDeathTest, OnlyMembersOfTheServicesAreBlamed) {
  EXPECT_DEATH(static_cast<void>(decodingError(Error::notAString, "isP")),
               "a decoding error blames a member that no service's answer has");
}

}  // namespace
}  // namespace lanternfold
