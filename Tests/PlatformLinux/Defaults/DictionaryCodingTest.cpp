#include <limits>

#include "Platform/UserDefaults.h"
#include "PlatformLinux/Defaults/DictionaryCoding.h"
#include "PlatformLinux/Defaults/StoredValue.h"

namespace lanternfold {
namespace {

using Data = PropertyListValue::Data;
using Date = PropertyListValue::Date;

Data bytes(std::string_view text) {
  const auto* const first = reinterpret_cast<const std::byte*>(text.data());
  return {first, first + text.size()};
}

template <std::size_t size>
Data bytes(const char (&text)[size]) {
  return bytes(std::string_view(text, size - 1));
}

const PropertyListDictionary everyKind{
    {"text", "Gr\xC3\xBC\xC3\x9F"},
    {"integer", std::int64_t{-2}},
    {"unsigned", std::numeric_limits<std::uint64_t>::max()},
    {"date", Date(std::chrono::nanoseconds(1))},
    {"data", Data{std::byte{0}, std::byte{255}}},
    {"dictionary", PropertyListDictionary{{"", PropertyListDictionary{}}}},
};

TEST(DictionaryCodingTest, AnEmptyDictionaryIsAnEmptyMap) {
  EXPECT_EQ(encodeDictionary({}), bytes("\xA0"));
  EXPECT_EQ(decodeDictionary(bytes("\xA0")), PropertyListDictionary{});
}

TEST(DictionaryCodingTest, ANumberStandsBehindTheNameOfItsKind) {
  const PropertyListDictionary dictionary{{"a", std::int64_t{5}}};
  const Data encoded = bytes(
      "\xA1\x61"
      "a\x82\x67integer\x05");
  EXPECT_EQ(encodeDictionary(dictionary), encoded);
  EXPECT_EQ(decodeDictionary(encoded), dictionary);
}

TEST(DictionaryCodingTest, EveryKindComesBackInItsOrder) {
  const auto decoded = decodeDictionary(encodeDictionary(everyKind));
  ASSERT_EQ(decoded, everyKind);
  for (std::size_t index = 0; index < everyKind.size(); ++index) {
    EXPECT_EQ(std::string_view(decoded->entries()[index].first),
              std::string_view(everyKind.entries()[index].first));
  }
}

TEST(DictionaryCodingTest, CutAtEveryByteItIsNothing) {
  const Data whole = encodeDictionary(everyKind);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_EQ(decodeDictionary(std::span(whole).first(size)), std::nullopt) << size;
  }
}

TEST(DictionaryCodingTest, ABitThatIsTurnedNeverHarms) {
  const Data whole = encodeDictionary(everyKind);
  for (std::size_t bit = 0; bit < whole.size() * 8; ++bit) {
    Data damaged = whole;
    damaged[bit / 8] ^= std::byte{1} << (bit % 8);
    if (const auto decoded = decodeDictionary(damaged)) {
      EXPECT_TRUE(isUserDefaultsValue(*decoded));
    }
  }
}

TEST(DictionaryCodingTest, WhatIsNoDictionaryOfOursIsNothing) {
  const std::vector<std::pair<const char*, Data>> table = {
      {"nothing", {}},
      {"a text", bytes("\x61"
                       "a")},
      {"a number", bytes("\x05")},
      {"an array", bytes("\x80")},
      {"a number with its kind but no dictionary", bytes("\x82\x67integer\x05")},
      {"bytes left over", bytes("\xA0\xA0")},
      {"a bare number", bytes("\xA1\x61"
                              "a\x05")},
      {"true", bytes("\xA1\x61"
                     "a\xF5")},
      {"null", bytes("\xA1\x61"
                     "a\xF6")},
      {"a fraction", bytes("\xA1\x61"
                           "a\xF9\x3C\x00")},
      {"a key that is a number", bytes("\xA1\x01\x61"
                                       "a")},
      {"a key that stands twice", bytes("\xA2\x61"
                                        "a\x61"
                                        "b\x61"
                                        "a\x61"
                                        "c")},
      {"an unknown kind of number", bytes("\xA1\x61"
                                          "a\x82\x65wrong\x05")},
      {"a kind without a number", bytes("\xA1\x61"
                                        "a\x81\x67integer")},
      {"two numbers of one kind", bytes("\xA1\x61"
                                        "a\x83\x67integer\x05\x06")},
      {"two kinds", bytes("\xA1\x61"
                          "a\x83\x67integer\x67integer\x05")},
      {"a number without a kind", bytes("\xA1\x61"
                                        "a\x81\x05")},
      {"an empty array", bytes("\xA1\x61"
                               "a\x80")},
      {"an array within one", bytes("\xA1\x61"
                                    "a\x81\x80")},
      {"a dictionary in the place of a number", bytes("\xA1\x61"
                                                      "a\x82\x67integer\xA0")},
      {"data in the place of a number", bytes("\xA1\x61"
                                              "a\x82\x67integer\x40")},
      {"an unsigned number below zero", bytes("\xA1\x61"
                                              "a\x82\x68unsigned\x20")},
      {"an integer beyond 2^63 - 1", bytes("\xA1\x61"
                                           "a\x82\x67integer\x1B\x80\x00\x00\x00\x00\x00\x00\x00")},
      {"a date beyond 2^63 - 1", bytes("\xA1\x61"
                                       "a\x82\x64"
                                       "date\x1B\x80\x00\x00\x00\x00\x00\x00\x00")},
      {"an integer below -2^63", bytes("\xA1\x61"
                                       "a\x82\x67integer\x3B\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF")},
      {"a tag", bytes("\xA1\x61"
                      "a\xC1\x61"
                      "b")},
      {"a text of 2^63 bytes", bytes("\xA1\x61"
                                     "a\x7B\x80\x00\x00\x00\x00\x00\x00\x00")},
      {"a map of 2^63 entries", bytes("\xBB\x80\x00\x00\x00\x00\x00\x00\x00")},
  };
  for (const auto& [name, encoded] : table) {
    EXPECT_EQ(decodeDictionary(encoded), std::nullopt) << name;
  }
}

TEST(DictionaryCodingTest, NestingIsBounded) {
  const auto nested = [](int levels) {
    std::string text;
    for (int level = 1; level < levels; ++level)
      text +=
          "\xA1\x61"
          "a";
    return bytes(text + "\xA0");
  };
  EXPECT_NE(decodeDictionary(nested(deepestUserDefaultsValue)), std::nullopt);
  EXPECT_EQ(decodeDictionary(nested(deepestUserDefaultsValue + 1)), std::nullopt);
  EXPECT_EQ(decodeDictionary(nested(1'000'000)), std::nullopt);
  EXPECT_EQ(decodeDictionary(bytes(std::string(1'000'000, '\x81'))), std::nullopt);
}

TEST(DictionaryCodingTest, ThousandsOfEntriesTakeNoQuadraticTime) {
  PropertyListDictionary dictionary;
  for (int index = 0; index < 100'000; ++index) {
    dictionary.append(std::to_string(index), PropertyListValue(Data(10)));
  }
  const auto decoded = decodeDictionary(encodeDictionary(dictionary));
  ASSERT_TRUE(decoded);
  EXPECT_EQ(decoded->size(), 100'000U);
}

TEST(StoredValueTest, AColumnOfAnotherTypeThanItsKindIsNothing) {
  const std::vector<StoredValue> table = {
      {"integer", "5"},
      {"date", "5"},
      {"string", std::int64_t{5}},
      {"string", Data{}},
      {"unsigned", std::int64_t{5}},
      {"data", "text"},
      {"dictionary", "text"},
      {"integer", Data{}},
      {"", "text"},
      {"boolean", std::int64_t{1}},
      {"String", "text"},
  };
  for (const StoredValue& stored : table) {
    EXPECT_EQ(propertyListValueOf(stored), std::nullopt) << stored.kind;
  }
}

TEST(StoredValueTest, AnUnsignedNumberIsDigitsAndNothingElse) {
  for (const char* const text :
       {"", " 5", "5 ", "+5", "-5", "0x5", "5.0", "18446744073709551616"}) {
    EXPECT_EQ(propertyListValueOf({"unsigned", text}), std::nullopt) << text;
  }
  EXPECT_EQ(propertyListValueOf({"unsigned", "18446744073709551615"}),
            PropertyListValue(std::numeric_limits<std::uint64_t>::max()));
}

TEST(StoredValueTest, ADictionaryOfBytesThatMeanNothingIsNothing) {
  EXPECT_EQ(propertyListValueOf({"dictionary", bytes("garbage")}), std::nullopt);
  EXPECT_EQ(propertyListValueOf({"dictionary", Data{}}), std::nullopt);
}

}  // namespace
}  // namespace lanternfold
