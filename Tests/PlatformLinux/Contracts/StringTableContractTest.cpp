// What every side of the string-table seam promises.
#include "PlatformLinux/System/GettextStringTable.h"
#include "Tests/PlatformLinux/Contracts/GettextCatalogue.h"
#include "Tests/Support/FakeStringTable.h"

namespace lanternfold {
namespace {

const std::map<std::string, std::string> italian{
    {"Carrier", "Operatore"},
    {"Connected via %@", "Connesso tramite %@"},
    {"Not connected", "Non è connesso"},
};

class GettextWorld {
 public:
  GettextWorld() : compiled_(catalogue_.add("it", "contract", italian)) {}

  [[nodiscard]] bool ready() const { return compiled_; }
  [[nodiscard]] const StringTable& table() const { return table_; }

 private:
  ScopedEnvironment language_{"LANGUAGE", "it"};
  GettextCatalogue catalogue_;
  bool compiled_;
  GettextStringTable table_{
      "contract", catalogue_.directory(), {.catalogue = "it", .numberLocale = "it"}};
};

class FakeWorld {
 public:
  FakeWorld() { table_.setDecimalSeparator(","); }

  [[nodiscard]] bool ready() const { return true; }
  [[nodiscard]] const StringTable& table() const { return table_; }

 private:
  FakeStringTable table_{
      std::map<std::string, std::string, std::less<>>(italian.begin(), italian.end())};
};

template <typename World>
class StringTableContractTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(world.ready()) << "the catalogue could not be compiled"; }

  [[nodiscard]] std::string localized(std::string_view key) const {
    return world.table().localized(key);
  }

  World world;
};

using Worlds = testing::Types<GettextWorld, FakeWorld>;

class WorldNames {
 public:
  template <typename World>
  static std::string GetName(int) {
    return std::is_same_v<World, GettextWorld> ? "Gettext" : "Fake";
  }
};

TYPED_TEST_SUITE(StringTableContractTest, Worlds, WorldNames);

TYPED_TEST(StringTableContractTest, KeyOfTheTableGivesItsText) {
  EXPECT_EQ(this->localized("Carrier"), "Operatore");
}

TYPED_TEST(StringTableContractTest, TextIsUtf8) {
  EXPECT_EQ(this->localized("Not connected"), "Non \xC3\xA8 connesso");
}

TYPED_TEST(StringTableContractTest, PlaceholdersComeBackAsTheyStand) {
  EXPECT_EQ(this->localized("Connected via %@"), "Connesso tramite %@");
}

TYPED_TEST(StringTableContractTest, UnknownKeyIsItsOwnText) {
  EXPECT_EQ(this->localized("Hotspot"), "Hotspot");
  EXPECT_EQ(this->localized("carrier"), "carrier");
}

TYPED_TEST(StringTableContractTest, NumbersAreWrittenInTheLanguage) {
  EXPECT_EQ(this->world.table().localizedDecimal("1.25"), "1,25");
  EXPECT_EQ(this->world.table().localizedDecimal("1024"), "1024");
}

TYPED_TEST(StringTableContractTest, EmptyKeyIsEmpty) { EXPECT_EQ(this->localized(""), ""); }

TYPED_TEST(StringTableContractTest, KeyNeedNotBeTerminated) {
  EXPECT_EQ(this->localized(std::string_view("Carriers").substr(0, 7)), "Operatore");
}

TYPED_TEST(StringTableContractTest, KeyWithAZeroByteIsItsOwnText) {
  const std::string key("Carrier\0x", 9);
  EXPECT_EQ(this->localized(key), key);
}

}  // namespace
}  // namespace lanternfold
