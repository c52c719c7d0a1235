// What every side of the user-defaults seam promises.
#include <limits>

#include "PlatformLinux/Defaults/SqliteUserDefaults.h"
#include "Tests/PlatformLinux/Defaults/DefaultsFixture.h"
#include "Tests/Support/FakeUserDefaults.h"
#include "Tests/Support/RecordingDiagnosticLog.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {
namespace {

using Date = PropertyListValue::Date;
using Data = PropertyListValue::Data;

// Every world has two programs over one disk. A disk that was made unreadable takes nothing either;
// how long a program has looked at it before is not for the contract, so none has.

class SqliteWorld {
 public:
  [[nodiscard]] UserDefaultsSuites& program() { return first_; }
  [[nodiscard]] UserDefaultsSuites& otherProgram() { return second_; }

  void makeUnreadable() { opener_ = keepFromOpening(database_); }
  void makeUnwritable() {
    writer_ = SqliteConnection::open(database_);
    ASSERT_TRUE(*writer_ && (*writer_)->execute("BEGIN IMMEDIATE"));
  }
  void mend() {
    opener_.reset();
    writer_.reset();
  }

 private:
  TemporaryFolder folder_;
  std::filesystem::path database_ = folder_ / "data/defaults/standard.sqlite";
  std::optional<FileDescriptor> opener_;
  std::optional<SqliteResult<SqliteConnection>> writer_;
  DataDirectory directory_{folder_ / "data"};
  RecordingDiagnosticLog log_;
  SqliteUserDefaultsSuites first_{directory_, log_};
  SqliteUserDefaultsSuites second_{directory_, log_};
};

class FakeWorld {
 public:
  [[nodiscard]] UserDefaultsSuites& program() { return first_; }
  [[nodiscard]] UserDefaultsSuites& otherProgram() { return second_; }

  void makeUnreadable() { disk_->isUnreadable = disk_->isFailing = true; }
  void makeUnwritable() { disk_->isFailing = true; }
  void mend() { disk_->isUnreadable = disk_->isFailing = false; }

 private:
  std::shared_ptr<FakeUserDefaultsDisk> disk_ = std::make_shared<FakeUserDefaultsDisk>();
  FakeUserDefaultsSuites first_{disk_};
  FakeUserDefaultsSuites second_{disk_};
};

/// `levels` dictionaries, one within the other.
PropertyListValue nested(int levels) {
  PropertyListValue value = "innermost";
  for (int level = 0; level < levels; ++level) {
    PropertyListDictionary dictionary;
    dictionary.set("inner", std::move(value));
    value = std::move(dictionary);
  }
  return value;
}

template <typename World>
class UserDefaultsContract : public testing::Test {
 protected:
  [[nodiscard]] UserDefaults& defaults() { return *world_.program().standard(); }
  [[nodiscard]] UserDefaults& other() { return *world_.otherProgram().standard(); }

  void expectKept(const PropertyListValue& value) {
    defaults().set("key", value);
    EXPECT_EQ(defaults().object("key"), value);
    EXPECT_EQ(other().object("key"), value);
  }

  World world_;
};

class WorldNames {
 public:
  template <typename World>
  static std::string GetName(int) {
    return std::is_same_v<World, SqliteWorld> ? "Linux" : "Fake";
  }
};

using Worlds = testing::Types<SqliteWorld, FakeWorld>;
TYPED_TEST_SUITE(UserDefaultsContract, Worlds, WorldNames);

TYPED_TEST(UserDefaultsContract, AKeyThatWasNeverSetHasNoValue) {
  EXPECT_EQ(this->defaults().object("key"), std::nullopt);
  this->defaults().remove("key");
  EXPECT_EQ(this->defaults().object("key"), std::nullopt);
}

TYPED_TEST(UserDefaultsContract, StringsAreKept) {
  this->expectKept("");
  this->expectKept(
      "Gr\xC3\xBC\xC3\x9F"
      "e\n'; DROP TABLE setting; --");
  this->expectKept(std::string("a\0b", 3));
  this->expectKept("\xFF\xFE");
}

TYPED_TEST(UserDefaultsContract, IntegersOfBothKindsAreKeptApart) {
  this->expectKept(std::numeric_limits<std::int64_t>::min());
  this->expectKept(std::numeric_limits<std::int64_t>::max());
  this->expectKept(std::numeric_limits<std::uint64_t>::max());
  this->expectKept(std::uint64_t{5});
  this->expectKept(std::int64_t{5});
  EXPECT_NE(this->other().object("key"), PropertyListValue(std::uint64_t{5}));
}

TYPED_TEST(UserDefaultsContract, DatesAreKeptToTheNanosecond) {
  this->expectKept(Date(std::chrono::nanoseconds(1'700'000'000'123'456'789)));
  this->expectKept(Date(std::chrono::nanoseconds(-1)));
  this->expectKept(Date::min());
  this->expectKept(Date::max());
}

TYPED_TEST(UserDefaultsContract, DataIsKept) {
  this->expectKept(Data{});
  Data all;
  for (int value = 0; value < 256; ++value) all.push_back(static_cast<std::byte>(value));
  this->expectKept(all);
}

TYPED_TEST(UserDefaultsContract, DictionariesOfEveryKindAreKept) {
  this->expectKept(PropertyListDictionary{});
  this->expectKept(PropertyListDictionary{
      {"0/en0", Data{std::byte{0x7B}, std::byte{0}}},
      {"", "no key"},
      {std::string("a\0b", 3), std::int64_t{-3}},
      {"signed", std::int64_t{3}},
      {"unsigned", std::numeric_limits<std::uint64_t>::max()},
      {"date", Date(std::chrono::nanoseconds(-5))},
      {"dictionary", PropertyListDictionary{{"en0", ""}}},
  });
}

TYPED_TEST(UserDefaultsContract, DictionariesNestAsDeepAsIsAllowed) {
  this->expectKept(nested(deepestUserDefaultsValue));
}

TYPED_TEST(UserDefaultsContract, ALaterValueTakesThePlaceOfAnEarlierOneOfAnyKind) {
  this->expectKept("text");
  this->expectKept(PropertyListDictionary{{"a", "b"}});
  this->expectKept(std::int64_t{1});
}

TYPED_TEST(UserDefaultsContract, KeysMayBeAnyText) {
  for (const std::string& key : {std::string(), std::string("a'b\"c;--"), std::string("a\0b", 3),
                                 std::string("a"), std::string("A"), std::string(10'000, 'k')}) {
    this->defaults().set(key, key);
  }
  EXPECT_EQ(this->other().object("a"), PropertyListValue("a"));
  EXPECT_EQ(this->other().object("A"), PropertyListValue("A"));
  EXPECT_EQ(this->other().object(""), PropertyListValue(""));
  EXPECT_EQ(this->other().object(std::string("a\0b", 3)),
            PropertyListValue(std::string("a\0b", 3)));
  EXPECT_EQ(this->other().object(std::string_view("abc").substr(0, 1)), PropertyListValue("a"));
}

TYPED_TEST(UserDefaultsContract, ARemovedValueIsGoneForEveryProgram) {
  this->defaults().set("key", "value");
  EXPECT_EQ(this->other().object("key"), PropertyListValue("value"));
  this->other().remove("key");
  EXPECT_EQ(this->defaults().object("key"), std::nullopt);
}

TYPED_TEST(UserDefaultsContract, WhatAnotherProgramSetIsSeenByTheNextLook) {
  this->defaults().set("key", std::int64_t{1});
  EXPECT_EQ(this->other().object("key"), PropertyListValue(1));
  this->other().set("key", std::int64_t{2});
  EXPECT_EQ(this->defaults().object("key"), PropertyListValue(2));
}

TYPED_TEST(UserDefaultsContract, SynchronisingWithOrWithoutChangesSucceeds) {
  EXPECT_TRUE(this->defaults().synchronize());
  this->defaults().set("key", "value");
  EXPECT_TRUE(this->defaults().synchronize());
  EXPECT_TRUE(this->defaults().synchronize());
  EXPECT_EQ(this->other().object("key"), PropertyListValue("value"));
}

TYPED_TEST(UserDefaultsContract, ASuiteThatCannotBeReadIsNotAnEmptyOne) {
  this->other().set("key", "value");
  this->world_.makeUnreadable();
  for (const char* const key : {"key", "none"}) {
    const auto looked = this->defaults().object(key);
    ASSERT_FALSE(looked) << key;
    EXPECT_THAT(looked.error().sentence, testing::HasSubstr("cannot be read: ")) << key;
  }
  this->world_.mend();
  EXPECT_TRUE(this->defaults().synchronize());
  EXPECT_EQ(this->defaults().object("key"), PropertyListValue("value"));
  EXPECT_EQ(this->defaults().object("none"), std::nullopt);
}

TYPED_TEST(UserDefaultsContract, WhatIsSetInASuiteThatCannotBeReadTakesNothingElseWithIt) {
  this->other().set("key", "value");
  this->other().set("removed", "value");
  this->world_.makeUnreadable();
  this->defaults().set("new", "value");
  this->defaults().remove("removed");
  EXPECT_EQ(this->defaults().object("new"), PropertyListValue("value"));
  EXPECT_EQ(this->defaults().object("removed"), std::nullopt);
  EXPECT_FALSE(this->defaults().object("key"));
  EXPECT_FALSE(this->defaults().synchronize());
  this->world_.mend();
  EXPECT_TRUE(this->defaults().synchronize());
  EXPECT_EQ(this->other().object("key"), PropertyListValue("value"));
  EXPECT_EQ(this->other().object("new"), PropertyListValue("value"));
  EXPECT_EQ(this->other().object("removed"), std::nullopt);
}

TYPED_TEST(UserDefaultsContract, WhatTheDiskDoesNotTakeIsSeenByThisProgramUntilItDoes) {
  this->other().set("key", "first");
  this->world_.makeUnwritable();
  this->defaults().set("key", "second");
  EXPECT_EQ(this->defaults().object("key"), PropertyListValue("second"));
  EXPECT_EQ(this->defaults().object("none"), std::nullopt);
  EXPECT_EQ(this->other().object("key"), PropertyListValue("first"));
  EXPECT_FALSE(this->defaults().synchronize());
  EXPECT_EQ(this->other().object("key"), PropertyListValue("first"));
  this->world_.mend();
  EXPECT_TRUE(this->defaults().synchronize());
  EXPECT_EQ(this->other().object("key"), PropertyListValue("second"));
}

TYPED_TEST(UserDefaultsContract, SuitesAreApartAndEachIsOne) {
  UserDefaultsSuites& suites = this->world_.program();
  const auto first = suites.suite("group.a");
  const auto second = suites.suite("group.b");
  ASSERT_TRUE(first && second && suites.standard());
  EXPECT_EQ(suites.suite("group.a"), first);
  EXPECT_EQ(suites.standard(), suites.standard());
  first->set("key", "a");
  second->set("key", "b");
  EXPECT_EQ(this->defaults().object("key"), std::nullopt);
  EXPECT_EQ(this->world_.otherProgram().suite("group.a")->object("key"), PropertyListValue("a"));
  EXPECT_EQ(second->object("key"), PropertyListValue("b"));
}

TYPED_TEST(UserDefaultsContract, WhatIsNoGroupIdentifierNamesNoSuite) {
  for (const std::string_view name : {"", ".", "..", "../a", "a/b", "-a", "a b"}) {
    EXPECT_EQ(this->world_.program().suite(name), nullptr) << name;
  }
}

TYPED_TEST(UserDefaultsContract, AKindThatIsNotStoredStopsTheProgram) {
  // A process that began anew would leave a folder of its own behind; no threads run here.
  GTEST_FLAG_SET(death_test_style, "fast");
  const std::vector<PropertyListValue> refused = {
      PropertyListValue(true), PropertyListValue(1.5), PropertyListArray{"a"},
      PropertyListDictionary{{"a", true}}, nested(deepestUserDefaultsValue + 1)};
  for (const PropertyListValue& value : refused) {
    EXPECT_DEATH(this->defaults().set("key", value), "a kind that they do not store");
  }
}

}  // namespace
}  // namespace lanternfold
