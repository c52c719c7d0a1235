#include <cstdint>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "NetworkMonitor/Metrics/ConnectionMetricsFields.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsJson.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsJsonValue.h"
#include "Tests/Support/SampleConnectionMetrics.h"

namespace lanternfold {
namespace {

using Error = ConnectionMetricsJsonError;
using Fault = Error::Fault;

const std::string oneToEightText = R"({"sentBytes":1,"recvBytes":2,"sentError":3,"recvError":4,)"
                                   R"("sentPacket":5,"recvPacket":6,"collisions":7,"mtu":8})";

/// The text of a record in which `key` holds `value`, a JSON text; the other keys hold zero.
std::string recordWith(std::string_view key, const std::string& value) {
  std::string text;
  for (const auto& field : connectionMetricsFields) {
    text += text.empty() ? "{" : ",";
    text += '"' + std::string(field.key) + "\":" + (field.key == key ? value : "0");
  }
  return text + "}";
}

std::string recordWithout(std::string_view key) {
  auto value = nlohmann::ordered_json::parse(oneToEightText);
  value.erase(std::string(key));
  return value.dump();
}

/// What decoding says of `text`: a message, or "ok".
std::string verdictOn(std::string_view text) {
  const auto metrics = decodeConnectionMetrics(text);
  return metrics ? "ok" : describe(metrics.error());
}

TEST(ConnectionMetricsJson, WritesTheEightKeysInOrder) {
  EXPECT_EQ(encodeConnectionMetrics(oneToEight), oneToEightText);
}

TEST(ConnectionMetricsJson, WritesZerosToo) {
  EXPECT_EQ(encodeConnectionMetrics(ConnectionMetrics::empty()), recordWith("mtu", "0"));
}

TEST(ConnectionMetricsJson, WritesTheLargestValueInFull) {
  constexpr auto largest = std::numeric_limits<std::uint64_t>::max();
  EXPECT_EQ(encodeConnectionMetrics({.recvPacket = largest}),
            recordWith("recvPacket", "18446744073709551615"));
}

TEST(ConnectionMetricsJson, ReadsWhatItWrites) {
  EXPECT_EQ(decodeConnectionMetrics(oneToEightText), oneToEight);
  std::mt19937_64 random(20240917);
  for (int round = 0; round < 500; ++round) {
    ConnectionMetrics metrics;
    for (const auto& field : connectionMetricsFields) {
      metrics.*field.member = random() >> (random() % 64);
    }
    EXPECT_EQ(decodeConnectionMetrics(encodeConnectionMetrics(metrics)), metrics);
  }
}

TEST(ConnectionMetricsJson, ReadsKeysInAnyOrderAndWithSpaces) {
  EXPECT_EQ(decodeConnectionMetrics(" { \"mtu\" : 8,\n\"collisions\":7,\t\"recvPacket\":6,"
                                    "\"sentPacket\":5,\"recvError\":4,\"sentError\":3,"
                                    "\"recvBytes\":2,\"sentBytes\":1 }\n"),
            oneToEight);
}

TEST(ConnectionMetricsJson, ReadsTheLargestValueOfEveryKey) {
  for (const auto& field : connectionMetricsFields) {
    const auto metrics = decodeConnectionMetrics(recordWith(field.key, "18446744073709551615"));
    ASSERT_TRUE(metrics.has_value()) << field.key;
    EXPECT_EQ((*metrics).*field.member, std::numeric_limits<std::uint64_t>::max()) << field.key;
  }
}

TEST(ConnectionMetricsJson, NamesAMissingMtu) {
  EXPECT_EQ(verdictOn(recordWithout("mtu")), "\"mtu\" is missing");
}

TEST(ConnectionMetricsJson, NamesEveryKeyThatIsMissing) {
  for (const auto& field : connectionMetricsFields) {
    const auto metrics = decodeConnectionMetrics(recordWithout(field.key));
    ASSERT_FALSE(metrics.has_value()) << field.key;
    EXPECT_EQ(metrics.error(), (Error{.fault = Fault::missingKey, .key = std::string(field.key)}));
  }
}

TEST(ConnectionMetricsJson, NamesTheFirstMissingKeyOfTheRecord) {
  EXPECT_EQ(verdictOn("{}"), "\"sentBytes\" is missing");
}

TEST(ConnectionMetricsJson, TakesKeysByTheirExactSpelling) {
  std::string text = recordWithout("mtu");
  text.insert(1, "\"MTU\":8,\"mtu \":8,");
  EXPECT_EQ(verdictOn(text), "\"mtu\" is missing");
}

TEST(ConnectionMetricsJson, NamesTheKeyOfEveryWrongValue) {
  for (const auto& field : connectionMetricsFields) {
    for (const char* wrong :
         {"null", "true", "false", "\"1\"", "\"\"", "[]", "[1]", "{}", "{\"mtu\":1}", "-1", "-0",
          "-9223372036854775808", "1.0", "0.5", "1e3", "1E0", "0e0", "18446744073709551616",
          "99999999999999999999999999999999999999"}) {
      const auto metrics = decodeConnectionMetrics(recordWith(field.key, wrong));
      ASSERT_FALSE(metrics.has_value()) << field.key << " " << wrong;
      EXPECT_EQ(metrics.error(),
                (Error{.fault = Fault::notAnUnsignedInteger, .key = std::string(field.key)}))
          << wrong;
    }
  }
}

TEST(ConnectionMetricsJson, NamesTheKeyBeforeTextThatIsNoJson) {
  for (const char* wrong : {"01", "+1", "1_000", "0x10", "NaN", "Infinity", "1e999", "'1'", ""}) {
    EXPECT_EQ(verdictOn(recordWith("recvError", wrong)),
              "\"recvError\" stands before text that is not JSON")
        << wrong;
  }
}

TEST(ConnectionMetricsJson, NamesADuplicateKeyEvenWithTheSameValue) {
  for (const auto& field : connectionMetricsFields) {
    std::string text = oneToEightText;
    text.insert(text.size() - 1, ",\"" + std::string(field.key) + "\":1");
    const auto metrics = decodeConnectionMetrics(text);
    ASSERT_FALSE(metrics.has_value()) << field.key;
    EXPECT_EQ(metrics.error(),
              (Error{.fault = Fault::duplicateKey, .key = std::string(field.key)}));
  }
}

TEST(ConnectionMetricsJson, FindsADuplicateKeyWrittenWithEscapes) {
  std::string text = oneToEightText;
  text.insert(1, R"("\u006dtu":8,)");
  EXPECT_EQ(verdictOn(text), "\"mtu\" stands twice");
}

TEST(ConnectionMetricsJson, IgnoresUnknownKeysOfAnyKind) {
  std::string text = oneToEightText;
  text.insert(1, R"("new":null,"list":[1,{"mtu":"x"}],"new":2.5,"deep":{"mtu":-1,"mtu":-2},"":0,)");
  EXPECT_EQ(decodeConnectionMetrics(text), oneToEight);
}

TEST(ConnectionMetricsJson, RefusesJsonThatIsNoObject) {
  for (const char* wrong : {"null", "true", "1", "\"text\"", "[]", "[1,2,3,4,5,6,7,8]"}) {
    EXPECT_EQ(verdictOn(wrong), "the document is not an object") << wrong;
  }
  EXPECT_EQ(verdictOn("[" + oneToEightText + "]"), "the document is not an object");
}

TEST(ConnectionMetricsJson, RefusesTextThatIsNoJson) {
  for (const char* wrong : {"", " ", "x", "{", "{,}", "{mtu:1}", "// comment\n{}", "\xFF"}) {
    EXPECT_EQ(verdictOn(wrong), "the document is not JSON") << wrong;
  }
}

/// The last of the record's keys that stands whole, with both its quotes, in `text`.
std::string lastWholeKeyOf(std::string_view text) {
  std::string last;
  for (const auto& field : connectionMetricsFields) {
    const std::string quoted = '"' + std::string(field.key) + '"';
    if (text.find(quoted) != std::string_view::npos) last = field.key;
  }
  return last;
}

TEST(ConnectionMetricsJson, NamesTheLastKeyBeforeACutAnywhere) {
  for (std::size_t length = 0; length < oneToEightText.size(); ++length) {
    const std::string_view text = std::string_view(oneToEightText).substr(0, length);
    const auto metrics = decodeConnectionMetrics(text);
    ASSERT_FALSE(metrics.has_value()) << text;
    EXPECT_EQ(metrics.error(), (Error{.fault = Fault::notJson, .key = lastWholeKeyOf(text)}))
        << text;
  }
}

TEST(ConnectionMetricsJson, NamesTheLastKeyBeforeTextBehindTheRecord) {
  for (const std::string& behind : {std::string("x"), std::string("}"), std::string(" ,"),
                                    std::string("{\"sentBytes\":1}"), oneToEightText}) {
    EXPECT_EQ(verdictOn(oneToEightText + behind), "\"mtu\" stands before text that is not JSON")
        << behind;
  }
}

TEST(ConnectionMetricsJson, DoesNotTakeAZeroByteForTheEndOfTheText) {
  const std::string zero(1, '\0');
  const std::string behindMtu = "\"mtu\" stands before text that is not JSON";
  EXPECT_EQ(verdictOn(oneToEightText + zero), behindMtu);
  EXPECT_EQ(verdictOn(oneToEightText + zero + "garbage"), behindMtu);
  EXPECT_EQ(verdictOn(zero + oneToEightText), "the document is not JSON");
  const auto type = decodeConnectionMetricsType("1" + zero + "garbage");
  ASSERT_FALSE(type.has_value());
  EXPECT_EQ(type.error(), Error{.fault = Fault::notJson});
}

TEST(ConnectionMetricsJson, RefusesAStringThatIsNotUtf8) {
  std::string text = oneToEightText;
  text.insert(1, "\"\xC3(\":1,");
  EXPECT_EQ(verdictOn(text), "the document is not JSON");
}

TEST(ConnectionMetricsJson, RefusesATextThatIsTooLong) {
  std::string text = oneToEightText;
  text.append(longestConnectionMetricsJsonBytes - text.size(), ' ');
  EXPECT_EQ(verdictOn(text), "ok");
  EXPECT_EQ(verdictOn(text + " "), "the document is too long");
}

std::string recordWithUnknownListsNested(std::size_t levels) {
  std::string text = oneToEightText;
  return text.insert(1, "\"x\":" + std::string(levels, '[') + std::string(levels, ']') + ",");
}

TEST(ConnectionMetricsJson, RefusesAnUnknownKeyNestedTooDeeply) {
  EXPECT_EQ(verdictOn(recordWithUnknownListsNested(deepestConnectionMetricsJson)), "ok");
  EXPECT_EQ(verdictOn(recordWithUnknownListsNested(deepestConnectionMetricsJson + 1)),
            "the document is nested too deeply");
}

TEST(ConnectionMetricsJson, SurvivesTensOfThousandsOfOpenLists) {
  EXPECT_EQ(verdictOn(std::string(60'000, '[')), "the document is not JSON");
  EXPECT_EQ(verdictOn(recordWithUnknownListsNested(30'000)), "the document is nested too deeply");
}

TEST(ConnectionMetricsJsonValue, IsAnObjectInsideOtherDocuments) {
  nlohmann::ordered_json document;
  document["en0"] = connectionMetricsToJson(oneToEight);
  EXPECT_EQ(document.dump(), "{\"en0\":" + oneToEightText + "}");
  EXPECT_EQ(connectionMetricsFromJson(document["en0"]), oneToEight);
}

TEST(ConnectionMetricsJsonValue, IsAsStrictAsTheText) {
  const auto errorOf = [](const char* text) {
    return connectionMetricsFromJson(nlohmann::ordered_json::parse(text)).error();
  };
  EXPECT_EQ(errorOf("[]"), Error{.fault = Fault::notAnObject});
  EXPECT_EQ(errorOf("null"), Error{.fault = Fault::notAnObject});
  EXPECT_EQ(errorOf("{}"), (Error{.fault = Fault::missingKey, .key = "sentBytes"}));
  EXPECT_EQ(errorOf(R"({"sentBytes":1.0})"),
            (Error{.fault = Fault::notAnUnsignedInteger, .key = "sentBytes"}));
  EXPECT_EQ(errorOf(R"({"sentBytes":-1})"),
            (Error{.fault = Fault::notAnUnsignedInteger, .key = "sentBytes"}));
}

TEST(ConnectionMetricsJsonValue, NamesThePlaceInTheDocumentInFrontOfTheKey) {
  const auto complaintOf = [](const char* text) {
    const auto value = nlohmann::ordered_json::parse(text);
    return describe(connectionMetricsFromJson(value, "original/en0").error());
  };
  EXPECT_EQ(complaintOf("{}"), "\"original/en0/sentBytes\" is missing");
  EXPECT_EQ(complaintOf(R"({"sentBytes":-1})"),
            "\"original/en0/sentBytes\" is not an unsigned 64-bit integer");
  EXPECT_EQ(complaintOf("[]"), "\"original/en0\" is not an object");
  EXPECT_EQ(describe(connectionMetricsTypeFromJson(2, "en0/type").error()),
            "\"en0/type\" is not a known case");
}

TEST(ConnectionMetricsTypeJson, RawValueTwoBuildsNoCase) {
  const auto type = decodeConnectionMetricsType("2");
  ASSERT_FALSE(type.has_value());
  EXPECT_EQ(type.error(), Error{.fault = Fault::unknownCase});
}

TEST(ConnectionMetricsTypeJson, IsItsRawValue) {
  EXPECT_EQ(encodeConnectionMetricsType(ConnectionMetricsType::original), "0");
  EXPECT_EQ(encodeConnectionMetricsType(ConnectionMetricsType::adjusted), "1");
  EXPECT_EQ(decodeConnectionMetricsType("0"), ConnectionMetricsType::original);
  EXPECT_EQ(decodeConnectionMetricsType(" 1\n"), ConnectionMetricsType::adjusted);
}

TEST(ConnectionMetricsTypeJson, RefusesEveryOtherValue) {
  for (const char* wrong :
       {"3", "-1", "1.0", "0e0", "null", "true", "\"1\"", "[1]", "{}", "4294967297",
        "9223372036854775808", "18446744073709551615", "18446744073709551616"}) {
    const auto type = decodeConnectionMetricsType(wrong);
    ASSERT_FALSE(type.has_value()) << wrong;
    EXPECT_EQ(describe(type.error()), "the document is not a known case") << wrong;
  }
}

TEST(ConnectionMetricsTypeJson, RefusesTextThatIsNoJson) {
  for (const char* wrong : {"", "original", "1 1", "01"}) {
    const auto type = decodeConnectionMetricsType(wrong);
    ASSERT_FALSE(type.has_value()) << wrong;
    EXPECT_EQ(type.error().fault, Fault::notJson) << wrong;
  }
}

}  // namespace
}  // namespace lanternfold
