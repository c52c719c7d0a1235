#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "EchoService/GeolocationTableJson.h"

namespace lanternfold {
namespace {

std::optional<std::string> ispOf(const GeolocationTable& table, std::string_view address) {
  const auto entry = table.find(parseIpAddress(address).value());
  return entry ? std::optional(entry->isp) : std::nullopt;
}

GeolocationTable tableOf(std::initializer_list<const char*> networks) {
  GeolocationTable table;
  for (const char* text : networks) {
    EXPECT_TRUE(table.insert(parseIpNetwork(text).value(), {.isp = text}));
  }
  return table;
}

std::string faultOf(std::string_view json) {
  const auto table = parseGeolocationTable(json);
  return table ? "no fault" : table.error();
}

TEST(GeolocationTable, TheLongestNetworkCounts) {
  const auto table = tableOf({"0.0.0.0/0", "10.0.0.0/8", "10.1.0.0/16", "10.1.2.3"});
  EXPECT_EQ(ispOf(table, "10.1.2.3"), "10.1.2.3");
  EXPECT_EQ(ispOf(table, "10.1.2.4"), "10.1.0.0/16");
  EXPECT_EQ(ispOf(table, "10.2.0.1"), "10.0.0.0/8");
  EXPECT_EQ(ispOf(table, "192.0.2.1"), "0.0.0.0/0");
  EXPECT_EQ(ispOf(table, "2001:db8::1"), std::nullopt);
}

TEST(GeolocationTable, KeepsTheFamiliesApart) {
  const auto table = tableOf({"::/0", "2001:db8::/32", "2001:db8::/48"});
  EXPECT_EQ(ispOf(table, "2001:db8:0:1::1"), "2001:db8::/48");
  EXPECT_EQ(ispOf(table, "2001:db8:1::1"), "2001:db8::/32");
  EXPECT_EQ(ispOf(table, "fe80::1"), "::/0");
  EXPECT_EQ(ispOf(table, "192.0.2.1"), std::nullopt);
}

TEST(GeolocationTable, AnEmptyOneKnowsNothing) {
  EXPECT_EQ(ispOf({}, "192.0.2.1"), std::nullopt);
  EXPECT_EQ(ispOf({}, "::"), std::nullopt);
}

TEST(GeolocationTable, ANetworkStandsInItOnce) {
  GeolocationTable table;
  EXPECT_TRUE(table.insert(parseIpNetwork("10.0.0.0/8").value(), {.isp = "first"}));
  EXPECT_FALSE(table.insert(parseIpNetwork("10.0.0.0/8").value(), {.isp = "second"}));
  EXPECT_EQ(ispOf(table, "10.0.0.1"), "first");
  EXPECT_EQ(table.size(), 1U);
}

TEST(GeolocationTableJson, ReadsEveryMember) {
  const auto table = parseGeolocationTable(R"({
    "198.51.100.0/24": {"isp": "Example Telecom", "countryCode": "IT", "as": "AS64500 Example"},
    "2001:db8::/32": {"as": "", "isp": "Beispiel-Netz é", "countryCode": "DE"}
  })");
  ASSERT_TRUE(table.has_value()) << table.error();
  EXPECT_EQ(table->size(), 2U);
  EXPECT_EQ(
      table->find(parseIpAddress("198.51.100.7").value()),
      (GeolocationEntry{.isp = "Example Telecom", .countryCode = "IT", .as = "AS64500 Example"}));
  EXPECT_EQ(table->find(parseIpAddress("2001:db8::7").value()),
            (GeolocationEntry{.isp = "Beispiel-Netz é", .countryCode = "DE", .as = ""}));
}

TEST(GeolocationTableJson, ReadsTheFixture) {
  std::ifstream file(LANTERNFOLD_SOURCE_DIR "/Docs/formats/fixtures/geolocation-table.json");
  const auto table = parseGeolocationTable(std::string(std::istreambuf_iterator<char>(file), {}));
  ASSERT_TRUE(table.has_value()) << table.error();
  EXPECT_EQ(table->size(), 4U);
  EXPECT_EQ(ispOf(*table, "198.51.100.200"), "Example Mobile");
  EXPECT_EQ(ispOf(*table, "203.0.113.9"), "Example Hosting");
  EXPECT_EQ(ispOf(*table, "2001:db8:ffff::1"), "Example Telecom");
}

TEST(GeolocationTableJson, AnEmptyObjectIsATable) {
  const auto table = parseGeolocationTable("{}");
  ASSERT_TRUE(table.has_value());
  EXPECT_EQ(table->size(), 0U);
}

TEST(GeolocationTableJson, SaysWhichEntryIsWrongAndHow) {
  const std::string longText(201, 'x');
  const std::pair<std::string, std::string> faults[] = {
      {"", "the text is not JSON from byte 1 on"},
      {"{", "the text is not JSON from byte 2 on"},
      {"{} {}", "the text is not JSON from byte 4 on"},
      {"[]", "the table is not a JSON object"},
      {"null", "the table is not a JSON object"},
      {"7", "the table is not a JSON object"},
      {R"("text")", "the table is not a JSON object"},
      {R"({"lan": {}})", "\"lan\" is neither an address nor a network"},
      {R"({"10.1.0.0/8": {}})",
       "\"10.1.0.0/8\" has bits set beyond its prefix; the network is 10.0.0.0/8"},
      {R"({"10.0.0.0/8": []})", "\"10.0.0.0/8\" is not an object"},
      {R"({"10.0.0.0/8": "IT"})", "\"10.0.0.0/8\" is not an object"},
      {R"({"10.0.0.0/8": null})", "\"10.0.0.0/8\" is not an object"},
      {R"({"10.0.0.0/8": {}})", "\"isp\" of \"10.0.0.0/8\" is missing"},
      {R"({"10.0.0.0/8": {"isp": "a", "as": "b"}})",
       "\"countryCode\" of \"10.0.0.0/8\" is missing"},
      {R"({"10.0.0.0/8": {"isp": "a", "countryCode": "IT"}})",
       "\"as\" of \"10.0.0.0/8\" is missing"},
      {R"({"10.0.0.0/8": {"isp": "a", "isp": "b"}})", "\"isp\" of \"10.0.0.0/8\" stands twice"},
      {R"({"10.0.0.0/8": {"isp": 7}})", "\"isp\" of \"10.0.0.0/8\" is not a text"},
      {R"({"10.0.0.0/8": {"isp": {}}})", "\"isp\" of \"10.0.0.0/8\" is not a text"},
      {R"({"10.0.0.0/8": {"as": ["a"]}})", "\"as\" of \"10.0.0.0/8\" is not a text"},
      {R"({"10.0.0.0/8": {"isp": ""}})", "\"isp\" of \"10.0.0.0/8\" is empty"},
      {R"({"10.0.0.0/8": {"isp": "a\u001bb"}})",
       "\"isp\" of \"10.0.0.0/8\" holds a control character"},
      {R"({"10.0.0.0/8": {"isp": ")" + longText + R"("}})",
       "\"isp\" of \"10.0.0.0/8\" is longer than 200 bytes"},
      {R"({"10.0.0.0/8": {"countryCode": "it"}})",
       "\"countryCode\" of \"10.0.0.0/8\" is not two upper-case letters"},
      {R"({"10.0.0.0/8": {"countryCode": "ITA"}})",
       "\"countryCode\" of \"10.0.0.0/8\" is not two upper-case letters"},
      {R"({"10.0.0.0/8": {"city": "Rome"}})",
       "\"10.0.0.0/8\" has a member \"city\", which is none of \"isp\", \"countryCode\" and "
       "\"as\""},
      {R"({"10.0.0.0/8": {"isp": "a", "countryCode": "IT", "as": ""},
           "10.0.0.0/8": {"isp": "a", "countryCode": "IT", "as": ""}})",
       "the network \"10.0.0.0/8\" stands twice"},
      {R"({"10.0.0.0/8": {"isp": "a" "as"}})",
       "the text is not JSON from byte 31 on, behind \"10.0.0.0/8\""},
      {"{\"10.0.0.0/8\": {\"isp\": \"\xFF\"}}",
       "the text is not JSON from byte 25 on, behind \"10.0.0.0/8\""},
  };
  for (const auto& [json, fault] : faults) EXPECT_EQ(faultOf(json), fault) << json;
}

TEST(GeolocationTableJson, ALongNameIsShortenedInTheFault) {
  const std::string name(5000, 'n');
  EXPECT_EQ(faultOf("{\"" + name + "\": {}}"),
            "\"" + name.substr(0, 60) + "…\" is neither an address nor a network");
}

TEST(GeolocationTableJson, NothingStandsBehindAZeroByte) {
  using namespace std::string_literals;
  EXPECT_EQ(faultOf("{}\0"s), "the text is not JSON: it holds a zero byte");
}

TEST(GeolocationTableJson, DeepNestingIsAFaultAndNoMore) {
  EXPECT_EQ(faultOf(std::string(1'000'000, '[')), "the table is not a JSON object");
  std::string objects;
  for (int depth = 0; depth < 100'000; ++depth) objects += R"({"10.0.0.0/8":)";
  EXPECT_EQ(faultOf(objects),
            "\"10.0.0.0/8\" has a member \"10.0.0.0/8\", which is none of "
            "\"isp\", \"countryCode\" and \"as\"");
}

TEST(GeolocationTableJson, IsBoundedInBytes) {
  EXPECT_EQ(faultOf("{}" + std::string(longestGeolocationTableBytes, ' ')),
            "the table is longer than 32 MiB");
}

TEST(GeolocationTableJson, IsBoundedInNetworks) {
  std::string json = "{";
  for (std::size_t number = 0; number <= mostGeolocationNetworks; ++number) {
    const auto byteText = [number](unsigned shift) {
      return std::to_string((number >> shift) & 0xFFU);
    };
    json += (number == 0 ? "\"10." : ",\"10.") + byteText(16) + "." + byteText(8) + "." +
            byteText(0) + R"(":{"isp":"a","countryCode":"IT","as":""})";
  }
  EXPECT_EQ(faultOf(json + "}"), "the table holds more than 250000 networks");
}

TEST(GeolocationTableJson, EveryTextThatIsCutShortIsAFault) {
  const std::string json = R"({"10.0.0.0/8":{"isp":"é","countryCode":"IT","as":"AS1"}})";
  ASSERT_EQ(faultOf(json), "no fault");
  for (std::size_t length = 0; length < json.size(); ++length) {
    EXPECT_TRUE(faultOf(json.substr(0, length)).starts_with("the text is not JSON")) << length;
  }
}

}  // namespace
}  // namespace lanternfold
