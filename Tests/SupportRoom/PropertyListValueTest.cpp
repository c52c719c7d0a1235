#include <chrono>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "Support/PropertyListValue.h"

namespace lanternfold {
namespace {

using Date = PropertyListValue::Date;

std::string keysOf(const PropertyListDictionary& dictionary) {
  std::string keys;
  for (const auto& entry : dictionary.entries()) keys += std::string(entry.first) + " ";
  return keys;
}

TEST(PropertyListDictionary, FindsWhatWasSet) {
  const PropertyListDictionary dictionary{{"name", "en0"}, {"mtu", 1500}};
  ASSERT_NE(dictionary.find("mtu"), nullptr);
  EXPECT_EQ(*dictionary.find("mtu"), PropertyListValue(1500));
  EXPECT_EQ(dictionary.find("MTU"), nullptr);
  EXPECT_EQ(dictionary.find(""), nullptr);
}

TEST(PropertyListDictionary, IsEmptyByDefault) {
  EXPECT_TRUE(PropertyListDictionary().empty());
  EXPECT_EQ(PropertyListDictionary().size(), 0U);
}

TEST(PropertyListDictionary, KeepsTheOrderInWhichKeysWereFirstSet) {
  PropertyListDictionary dictionary;
  dictionary.set("zebra", 1);
  dictionary.set("ape", 2);
  dictionary.set("zebra", 3);
  EXPECT_EQ(keysOf(dictionary), "zebra ape ");
  EXPECT_EQ(*dictionary.find("zebra"), PropertyListValue(3));
}

TEST(PropertyListDictionary, TakesTheLaterOfTwoEntriesOfOneKeyInAList) {
  const PropertyListDictionary dictionary{{"mtu", 1500}, {"mtu", 9000}};
  EXPECT_EQ(dictionary.size(), 1U);
  EXPECT_EQ(*dictionary.find("mtu"), PropertyListValue(9000));
}

TEST(PropertyListDictionary, ErasesAKeyAndForgivesAMissingOne) {
  PropertyListDictionary dictionary{{"a", 1}, {"b", 2}, {"c", 3}};
  dictionary.erase("b");
  dictionary.erase("b");
  EXPECT_EQ(keysOf(dictionary), "a c ");
}

TEST(PropertyListDictionary, AppendsBehindTheOthers) {
  PropertyListDictionary dictionary;
  dictionary.reserve(2);
  dictionary.append("b", true);
  dictionary.append("a", false);
  EXPECT_EQ(keysOf(dictionary), "b a ");
}

TEST(PropertyListDictionary, ChangesAValueInPlace) {
  PropertyListDictionary dictionary{{"addresses", PropertyListArray{"10.0.0.1"}}};
  dictionary.find("addresses")->asArray()->push_back("10.0.0.2");
  EXPECT_EQ(dictionary.find("addresses")->asArray()->size(), 2U);
}

TEST(PropertyListDictionary, KeepsACopyOfAKeyThatIsNoConstant) {
  PropertyListDictionary dictionary;
  {
    std::string key = "made while running";
    dictionary.set(key, 1);
    key.assign(key.size(), 'x');
  }
  EXPECT_EQ(keysOf(dictionary), "made while running ");
}

TEST(PropertyListDictionary, BorrowsAConstantAndFindsItByItsText) {
  static constexpr LiteralText constant{"recv_bytes"};
  PropertyListDictionary dictionary;
  dictionary.append(constant, 1);
  dictionary.set(constant, 2);
  ASSERT_EQ(dictionary.size(), 1U);
  EXPECT_EQ(*dictionary.find(std::string("recv_bytes")), PropertyListValue(2));
  const std::string_view key = dictionary.entries().front().first;
  EXPECT_EQ(static_cast<const void*>(key.data()),
            static_cast<const void*>(std::string_view(constant).data()));
  EXPECT_EQ(dictionary, (PropertyListDictionary{{"recv_bytes", 2}}));
}

TEST(PropertyListDictionary, CopiesAndMovesOwnedAndBorrowedKeysAlike) {
  static constexpr LiteralText constant{"borrowed"};
  PropertyListDictionary original{{"owned", 1}};
  original.append(constant, 2);
  PropertyListDictionary copy = original;
  original.erase("owned");
  EXPECT_EQ(keysOf(original), "borrowed ");
  EXPECT_EQ(keysOf(copy), "owned borrowed ");
  const PropertyListDictionary moved = std::move(copy);
  EXPECT_EQ(keysOf(moved), "owned borrowed ");
  copy = moved;
  EXPECT_EQ(copy, moved);
}

TEST(PropertyListDictionary, IsEqualWhateverTheOrder) {
  const PropertyListDictionary one{{"a", 1}, {"b", "x"}};
  const PropertyListDictionary other{{"b", "x"}, {"a", 1}};
  EXPECT_EQ(one, other);
  EXPECT_NE(one, (PropertyListDictionary{{"a", 1}}));
  EXPECT_NE(one, (PropertyListDictionary{{"a", 1}, {"b", "y"}}));
  EXPECT_NE(one, (PropertyListDictionary{{"a", 1}, {"c", "x"}}));
}

TEST(PropertyListValue, AnswersOnlyAsItsOwnKind) {
  const PropertyListValue text("en0");
  ASSERT_NE(text.asString(), nullptr);
  EXPECT_EQ(*text.asString(), "en0");
  EXPECT_EQ(text.asArray(), nullptr);
  EXPECT_EQ(text.asDictionary(), nullptr);
  EXPECT_EQ(text.asDate(), nullptr);
  EXPECT_EQ(text.asData(), nullptr);
  EXPECT_EQ(text.asDouble(), nullptr);
  EXPECT_EQ(text.asInteger(), std::nullopt);
  EXPECT_EQ(text.asUnsigned(), std::nullopt);
  EXPECT_EQ(text.asBoolean(), std::nullopt);
}

TEST(PropertyListValue, HoldsDatesDataAndDoubles) {
  const Date date{std::chrono::seconds(1'000'000)};
  EXPECT_EQ(*PropertyListValue(date).asDate(), date);
  const PropertyListValue::Data data{std::byte{1}, std::byte{255}};
  EXPECT_EQ(*PropertyListValue(data).asData(), data);
  EXPECT_EQ(*PropertyListValue(0.5).asDouble(), 0.5);
}

TEST(PropertyListValue, TakesALiteralForAStringNotABoolean) {
  EXPECT_EQ(PropertyListValue("yes").asBoolean(), std::nullopt);
  EXPECT_NE(PropertyListValue("yes").asString(), nullptr);
  EXPECT_NE(PropertyListValue(std::string_view("yes")).asString(), nullptr);
}

TEST(PropertyListValue, NestsListsAndDictionaries) {
  const PropertyListValue value(
      PropertyListDictionary{{"list", PropertyListArray{1, "two", PropertyListDictionary{}}}});
  const PropertyListArray* list = value.asDictionary()->find("list")->asArray();
  ASSERT_NE(list, nullptr);
  ASSERT_EQ(list->size(), 3U);
  EXPECT_NE((*list)[2].asDictionary(), nullptr);
  const PropertyListValue copy = value;
  EXPECT_EQ(copy, value);
}

TEST(PropertyListValue, ConvertsBetweenIntegerKindsThatFit) {
  constexpr auto largestSigned = std::numeric_limits<std::int64_t>::max();
  constexpr auto largestUnsigned = std::numeric_limits<std::uint64_t>::max();
  EXPECT_EQ(PropertyListValue(std::uint64_t{7}).asInteger(), 7);
  EXPECT_EQ(PropertyListValue(7).asUnsigned(), 7U);
  EXPECT_EQ(PropertyListValue(static_cast<std::uint64_t>(largestSigned)).asInteger(),
            largestSigned);
  EXPECT_EQ(PropertyListValue(largestUnsigned).asUnsigned(), largestUnsigned);
}

TEST(PropertyListValue, HasNoIntegerOutOfRangeOrOfAnotherKind) {
  EXPECT_EQ(PropertyListValue(std::uint64_t{1} << 63U).asInteger(), std::nullopt);
  EXPECT_EQ(PropertyListValue(-1).asUnsigned(), std::nullopt);
  EXPECT_EQ(PropertyListValue(7.0).asInteger(), std::nullopt);
  EXPECT_EQ(PropertyListValue(true).asInteger(), std::nullopt);
  EXPECT_EQ(PropertyListValue(true).asUnsigned(), std::nullopt);
  EXPECT_EQ(PropertyListValue("7").asInteger(), std::nullopt);
}

TEST(PropertyListValue, ReadsZeroAndOneAsBooleans) {
  EXPECT_EQ(PropertyListValue(true).asBoolean(), true);
  EXPECT_EQ(PropertyListValue(false).asBoolean(), false);
  EXPECT_EQ(PropertyListValue(1).asBoolean(), true);
  EXPECT_EQ(PropertyListValue(std::uint64_t{0}).asBoolean(), false);
  EXPECT_EQ(PropertyListValue(2).asBoolean(), std::nullopt);
  EXPECT_EQ(PropertyListValue(-1).asBoolean(), std::nullopt);
  EXPECT_EQ(PropertyListValue(1.0).asBoolean(), std::nullopt);
}

TEST(PropertyListValue, IsNeverEqualAcrossKinds) {
  EXPECT_NE(PropertyListValue(1), PropertyListValue(std::uint64_t{1}));
  EXPECT_NE(PropertyListValue(1), PropertyListValue(true));
  EXPECT_NE(PropertyListValue(1), PropertyListValue(1.0));
  EXPECT_NE(PropertyListValue(1), PropertyListValue("1"));
  EXPECT_EQ(PropertyListValue(1), PropertyListValue(std::int64_t{1}));
}

}  // namespace
}  // namespace lanternfold
