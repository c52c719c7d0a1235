// The JSON of a storage's file: what is written, and what is said of a text that is none.
#include <limits>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "NetworkMonitor/Metrics/ConnectionMetricsFileJson.h"
#include "Tests/Support/SampleConnectionMetrics.h"

namespace lanternfold {
namespace {

using Type = ConnectionMetricsType;
using Fault = ConnectionMetricsJsonError::Fault;

const std::string record = R"({"sentBytes":1,"recvBytes":2,"sentError":3,"recvError":4,)"
                           R"("sentPacket":5,"recvPacket":6,"collisions":7,"mtu":8})";

std::string encoded(const ConnectionMetricsData& data) {
  const auto file = encodeConnectionMetricsFile(data);
  return file ? file->text : describe(file.error());
}

/// What decoding says of `text`: a message, or "ok".
std::string verdictOn(std::string_view text) {
  const auto data = decodeConnectionMetricsFile(text);
  return data ? "ok" : describe(data.error());
}

/// `record` with one text in it replaced.
std::string recordWith(std::string_view text, std::string_view replacement) {
  std::string changed = record;
  return changed.replace(changed.find(text), text.size(), replacement);
}

std::string fileOf(const std::string& recordText) { return R"([0,{"en0":)" + recordText + "}]"; }

TEST(ConnectionMetricsFileJson, AlternatesTypesAndObjectsOfRecords) {
  EXPECT_EQ(encoded({{Type::original, {{"en0", oneToEight}, {"en1", oneToEight}}},
                     {Type::adjusted, {{"en0", oneToEight}}}}),
            R"([0,{"en0":)" + record + R"(,"en1":)" + record + R"(},1,{"en0":)" + record + "}]");
}

TEST(ConnectionMetricsFileJson, OfNothingIsAnEmptyArray) {
  EXPECT_EQ(encoded({}), "[]");
  EXPECT_EQ(decodeConnectionMetricsFile("[]"), ConnectionMetricsData());
}

TEST(ConnectionMetricsFileJson, KeepsATypeWithoutRecords) {
  EXPECT_EQ(encoded({{Type::adjusted, {}}}), "[1,{}]");
  EXPECT_EQ(decodeConnectionMetricsFile("[1,{}]"), (ConnectionMetricsData{{Type::adjusted, {}}}));
}

TEST(ConnectionMetricsFileJson, ReadsWhatItWrites) {
  ConnectionMetrics largest;
  largest.recvBytes = std::numeric_limits<std::uint64_t>::max();
  const ConnectionMetricsData data{
      {Type::original, {{"", {}}, {"a\"\\/\b\x01\x7F", largest}, {"größe\U0001F310", oneToEight}}},
      {Type::adjusted, {{"en0", oneToEight}}}};
  EXPECT_EQ(decodeConnectionMetricsFile(encoded(data)), data);
}

TEST(ConnectionMetricsFileJson, IsJsonThatTheLibraryReads) {
  const auto value = nlohmann::json::parse(encoded({{Type::original, {{"a\"b\n", oneToEight}}}}));
  EXPECT_EQ(value.at(1).at("a\"b\n").at("mtu"), 8);
}

TEST(ConnectionMetricsFileJson, TakesPairsAndNamesInAnyOrderWithSpaces) {
  const auto data = decodeConnectionMetricsFile("\n [ 1 , { \"b\" : " + record +
                                                " ,\t\"a\": " + record + " } , 0 , { } ]\r\n");
  EXPECT_EQ(data,
            (ConnectionMetricsData{{Type::original, {}},
                                   {Type::adjusted, {{"a", oneToEight}, {"b", oneToEight}}}}));
}

TEST(ConnectionMetricsFileJson, TakesFieldsInAnyOrderAndPassesOverUnknownOnes) {
  EXPECT_EQ(decodeConnectionMetricsFile(
                R"([0,{"en0":{"mtu":8,"colour":"red","collisions":7,"recvPacket":6,"sentPacket":5,)"
                R"("later":{"sentBytes":[9,{"mtu":null}]},"recvError":4,"sentError":3,)"
                R"("recvBytes":2,"sentBytes":1}}])"),
            (ConnectionMetricsData{{Type::original, {{"en0", oneToEight}}}}));
}

TEST(ConnectionMetricsFileJson, LeavesOutARecordWhoseNameIsNotUtf8) {
  const auto file = encodeConnectionMetricsFile(
      {{Type::original, {{"\xFF", oneToEight}, {"en0", oneToEight}, {"en\xC3", oneToEight}}}});
  ASSERT_TRUE(file);
  EXPECT_EQ(file->text, fileOf(record));
  EXPECT_EQ(file->recordsLeftOut, 2U);
}

TEST(ConnectionMetricsFileJson, LongerThanWouldBeReadIsNotWritten) {
  const ConnectionMetricsData data{{Type::original, {{"en0", oneToEight}}}};
  const std::size_t size = fileOf(record).size();
  EXPECT_TRUE(encodeConnectionMetricsFile(data, size));
  const auto file = encodeConnectionMetricsFile(data, size - 1);
  ASSERT_FALSE(file);
  EXPECT_EQ(describe(file.error()), "the document is too long");
}

TEST(ConnectionMetricsFileJson, LongerThan64MebibytesIsNotRead) {
  std::string text = "[]";
  text.resize(longestConnectionMetricsFileBytes, ' ');
  EXPECT_EQ(verdictOn(text), "ok");
  EXPECT_EQ(verdictOn(text + " "), "the document is too long");
}

TEST(ConnectionMetricsFileJson, OfAnotherKindIsNotAnArray) {
  for (const char* text : {"{}", "7", "null", "\"text\"", R"({"version":2,"data":[]})", "-1.5"}) {
    EXPECT_EQ(verdictOn(text), "the document is not an array") << text;
  }
}

TEST(ConnectionMetricsFileJson, ThatIsNoJsonSaysAfterWhatItEnds) {
  EXPECT_EQ(verdictOn(""), "the document is not JSON");
  EXPECT_EQ(verdictOn("hello"), "the document is not JSON");
  EXPECT_EQ(verdictOn("["), "\"[0]\" stands before text that is not JSON");
  EXPECT_EQ(verdictOn("[0"), "\"0\" stands before text that is not JSON");
  EXPECT_EQ(verdictOn(R"([0,{"en0":{"sentBytes":1,)"),
            "\"0/en0/sentBytes\" stands before text that is not JSON");
}

TEST(ConnectionMetricsFileJson, CutAtAnyByteIsNoJson) {
  const std::string whole =
      encoded({{Type::original, {{"en0", oneToEight}}}, {Type::adjusted, {{"en0", oneToEight}}}});
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const auto data = decodeConnectionMetricsFile(std::string_view(whole).substr(0, size));
    ASSERT_FALSE(data) << size;
    EXPECT_EQ(data.error().fault, Fault::notJson) << size;
  }
}

TEST(ConnectionMetricsFileJson, WithTrailingBytesIsNoJson) {
  using namespace std::string_view_literals;
  for (const std::string_view tail : {"x"sv, "[]"sv, ","sv, "\0"sv, "\0x"sv}) {
    EXPECT_NE(verdictOn("[0,{}]" + std::string(tail)), "ok");
  }
}

TEST(ConnectionMetricsFileJson, WithAZeroByteIsNoJson) {
  using namespace std::string_literals;
  EXPECT_NE(verdictOn("[\0]"s), "ok");
  EXPECT_NE(verdictOn("\0[]"s), "ok");
  EXPECT_NE(verdictOn("[0,{\"en\0\":"s + record + "}]"), "ok");
}

TEST(ConnectionMetricsFileJson, ThatIsNotUtf8IsNoJson) {
  EXPECT_NE(verdictOn("[0,{\"en\xFF\":" + record + "}]"), "ok");
  EXPECT_NE(verdictOn(fileOf(recordWith("{", "{\"\xC3\x28\":1,"))), "ok");
}

TEST(ConnectionMetricsFileJson, OfOddLengthNamesTheTypeWithoutRecords) {
  EXPECT_EQ(verdictOn("[0]"), "\"0\" has no records behind it");
  EXPECT_EQ(verdictOn("[0,{},1]"), "\"1\" has no records behind it");
}

TEST(ConnectionMetricsFileJson, WithAnUnknownTypeNamesItsPlace) {
  for (const char* type :
       {"2", "-1", "18446744073709551615", "0.0", "1e0", "\"0\"", "null", "true", "[]", "{}"}) {
    EXPECT_EQ(verdictOn("[" + std::string(type) + ",{}]"), "\"[0]\" is not a known case") << type;
    EXPECT_EQ(verdictOn("[0,{}," + std::string(type) + ",{}]"), "\"[2]\" is not a known case")
        << type;
  }
}

TEST(ConnectionMetricsFileJson, WithATypeTwiceNamesIt) {
  EXPECT_EQ(verdictOn("[0,{},0,{}]"), "\"0\" stands twice");
  EXPECT_EQ(verdictOn("[1,{},0,{},1,{}]"), "\"1\" stands twice");
}

TEST(ConnectionMetricsFileJson, WithAnotherKindThanAnObjectNamesTheTypeOrTheInterface) {
  for (const char* value : {"7", "null", "\"\"", "[]", "[{}]", "true", "-1", "0.5"}) {
    EXPECT_EQ(verdictOn("[1," + std::string(value) + "]"), "\"1\" is not an object") << value;
    EXPECT_EQ(verdictOn(fileOf(value)), "\"0/en0\" is not an object") << value;
    EXPECT_EQ(verdictOn(fileOf(record + ",\"en1\":" + value)), "\"0/en1\" is not an object")
        << value;
  }
}

TEST(ConnectionMetricsFileJson, WithAnInterfaceTwiceNamesIt) {
  EXPECT_EQ(
      verdictOn(R"([0,{"en0":)" + record + R"(,"en1":)" + record + R"(,"en0":)" + record + "}]"),
      "\"0/en0\" stands twice");
  EXPECT_EQ(verdictOn(R"([0,{"en0":)" + record + R"(,"\u0065n0":)" + record + "}]"),
            "\"0/en0\" stands twice");
  EXPECT_EQ(verdictOn(R"([0,{"en0":)" + record + R"(},1,{"en0":)" + record + "}]"), "ok");
}

TEST(ConnectionMetricsFileJson, WithoutAFieldNamesTheFirstOne) {
  EXPECT_EQ(verdictOn(fileOf(recordWith(",\"mtu\":8", ""))), "\"0/en0/mtu\" is missing");
  EXPECT_EQ(verdictOn(fileOf("{}")), "\"0/en0/sentBytes\" is missing");
  EXPECT_EQ(verdictOn(R"([0,{"en0":)" + record + R"(,"en1":{"mtu":1}}])"),
            "\"0/en1/sentBytes\" is missing");
}

TEST(ConnectionMetricsFileJson, WithAFieldTwiceNamesIt) {
  EXPECT_EQ(verdictOn(fileOf(recordWith("\"mtu\":8", R"("mtu":8,"mtu":8)"))),
            "\"0/en0/mtu\" stands twice");
}

TEST(ConnectionMetricsFileJson, WithAFieldThatIsNoCounterNamesIt) {
  for (const char* value :
       {"-1", "-0", "1.0", "1e3", "null", "true", "\"1\"", "[1]", "{}", "18446744073709551616"}) {
    EXPECT_EQ(
        verdictOn(fileOf(recordWith("\"recvError\":4", R"("recvError":)" + std::string(value)))),
        "\"0/en0/recvError\" is not an unsigned 64-bit integer")
        << value;
  }
}

TEST(ConnectionMetricsFileJson, NestedTooDeeplyIsRefused) {
  const auto nested = [](std::size_t levels) {
    return fileOf(
        recordWith("{", "{\"later\":" + std::string(levels, '[') + std::string(levels, ']') + ","));
  };
  EXPECT_EQ(verdictOn(nested(deepestConnectionMetricsJson)), "ok");
  EXPECT_EQ(decodeConnectionMetricsFile(nested(deepestConnectionMetricsJson + 1)).error().fault,
            Fault::tooDeep);
  EXPECT_NE(verdictOn(std::string(8'000'000, '[')), "ok");
}

TEST(ConnectionMetricsFileJson, NamesInErrorsAreShortAndVisible) {
  EXPECT_EQ(verdictOn(R"([0,{"\u001b[2J\n":7}])"), R"("0/\u001b[2J\n" is not an object)");
  EXPECT_EQ(verdictOn(R"([0,{")" + std::string(1000, 'x') + R"(":7}])"),
            "\"0/" + std::string(64, 'x') + "\" is not an object");
}

}  // namespace
}  // namespace lanternfold
