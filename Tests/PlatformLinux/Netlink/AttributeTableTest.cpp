#include <gtest/gtest.h>

#include "PlatformLinux/Netlink/AttributeTable.h"
#include "Tests/PlatformLinux/Netlink/NetlinkFrames.h"

namespace lanternfold::test {
namespace {

constexpr AttributeTable table(std::array{
    numberAttribute<std::uint32_t>(1, "NUMBER", AttributePresence::required),
    textAttribute(2, "TEXT", 4),
    bytesAttribute(3, "BYTES", 2, 3),
    nestedAttribute(4, "NESTED"),
    flagAttribute(5, "FLAG"),
});

const Bytes number = numberAttributeBytes(1, std::uint32_t{42});

TEST(AttributeTable, GivesWhatIsThereAndNothingElse) {
  const Bytes bytes = joined({number, attribute(2, textBytes("abc"))});
  const auto attributes = table.parse(bytes).value();
  EXPECT_EQ(attributes.number<std::uint32_t>(1), 42U);
  EXPECT_EQ(attributes.text(2), "abc");
  EXPECT_FALSE(attributes.has(3));
  EXPECT_FALSE(attributes.bytes(4).has_value());
  EXPECT_FALSE(attributes.has(5));
}

TEST(AttributeTable, MissingDuplicateAndWrongSizeAreThreeErrorsThatNameTheAttribute) {
  using enum DecodeProblem;
  const std::pair<Bytes, DecodeError> cases[] = {
      {{}, {missing, "NUMBER"}},
      {attribute(2, textBytes("abc")), {missing, "NUMBER"}},
      {joined({number, number}), {duplicate, "NUMBER"}},
      {attribute(1, {1, 2, 3}), {wrongSize, "NUMBER"}},
      {attribute(1, {1, 2, 3, 4, 5}), {wrongSize, "NUMBER"}},
      {joined({number, attribute(2, {})}), {wrongSize, "TEXT"}},
      {joined({number, attribute(2, textBytes("abcd"))}), {wrongSize, "TEXT"}},
      {joined({number, attribute(2, {'a', 'b'})}), {badValue, "TEXT"}},
      {joined({number, attribute(3, {1})}), {wrongSize, "BYTES"}},
      {joined({number, attribute(3, {1, 2, 3, 4})}), {wrongSize, "BYTES"}},
  };
  for (const auto& [bytes, error] : cases) {
    EXPECT_EQ(table.parse(bytes).error(), error) << description(error);
  }
}

TEST(AttributeTable, AnExpendableAttributeThatMakesNoSenseCountsAsNotThere) {
  static constexpr AttributeTable expendables(std::array{
      numberAttribute<std::uint32_t>(1, "NUMBER", AttributePresence::expendable),
      textAttribute(2, "TEXT", 4, AttributePresence::expendable),
      nestedAttribute(4, "NESTED", AttributePresence::expendable),
  });
  const Bytes text = attribute(2, textBytes("abc"));
  for (const Bytes& bad : {Bytes(), attribute(1, {1, 2, 3}), joined({number, number}),
                           joined({number, number, number}), joined({attribute(1, {}), number}),
                           joined({number, attribute(1, {})})}) {
    const Bytes bytes = joined({bad, text});
    const auto attributes = expendables.parse(bytes);
    ASSERT_TRUE(attributes);
    EXPECT_FALSE(attributes->has(1));
    EXPECT_EQ(attributes->text(2), "abc");
  }
  EXPECT_FALSE(expendables.parse(attribute(2, {'a', 'b'}))->has(2));
  EXPECT_FALSE(expendables.parse(joined({attribute(4, {}), attribute(4, {})}))->has(4));
}

TEST(AttributeTable, UnknownAttributesAreSkippedHoweverOften) {
  const Bytes unknown = attribute(77, {1, 2, 3});
  const Bytes bytes = joined({unknown, unknown, number, attribute(16000, {}), unknown});
  EXPECT_EQ(table.parse(bytes).value().number<std::uint32_t>(1), 42U);
}

TEST(AttributeTable, TheFlagBitsOfATypeAreMasked) {
  const Bytes bytes = joined(
      {number, attribute(4 | NLA_F_NESTED, {9, 9}), attribute(3 | NLA_F_NET_BYTEORDER, {1, 2})});
  const auto attributes = table.parse(bytes).value();
  EXPECT_EQ(attributes.bytes(4)->size(), 2U);
  EXPECT_TRUE(attributes.has(3));
}

TEST(AttributeTable, AnAttributeShorterThanItsHeaderIsABadLength) {
  for (const std::uint16_t claimed : std::vector<std::uint16_t>{0, 1, 3}) {
    Bytes bytes = number;
    std::memcpy(bytes.data(), &claimed, sizeof(claimed));
    EXPECT_EQ(table.parse(bytes).error(), (DecodeError{DecodeProblem::badLength, "nlattr"}));
  }
}

TEST(AttributeTable, CutAtEveryByteItIsTruncatedOrIncomplete) {
  const Bytes whole = joined({number, attribute(3, {1, 2, 3})});
  for (std::size_t length = 0; length + 1 < whole.size(); ++length) {
    const auto attributes = table.parse(std::span(whole).first(length));
    if (length == number.size()) {
      EXPECT_TRUE(attributes) << "cut between two attributes";
      continue;
    }
    EXPECT_FALSE(attributes) << length;
  }
}

TEST(AttributeTable, OverNestedBytesAreNotFollowed) {
  Bytes nested;
  for (int depth = 0; depth < 200; ++depth) nested = attribute(4, nested);
  const Bytes bytes = joined({number, attribute(4, nested)});
  EXPECT_EQ(table.parse(bytes).value().bytes(4)->size(), nested.size());
}

TEST(AttributeTableDeathTest, AskingForAnAttributeThatIsNotListedIsAProgrammersError) {
  const auto attributes = table.parse(number).value();
  EXPECT_DEATH(static_cast<void>(attributes.has(6)), "does not list");
}

}  // namespace
}  // namespace lanternfold::test
