// The fixture of Docs/formats is what the program writes and reads.
#include <fstream>
#include <limits>

#include "Tests/PlatformLinux/Defaults/DefaultsFixture.h"

namespace lanternfold {
namespace {

using Data = PropertyListValue::Data;
using Date = PropertyListValue::Date;

const std::vector<std::pair<std::string, PropertyListValue>> settings = {
    {"data", Data{std::byte{0}, std::byte{255}}},
    {"date", Date(std::chrono::nanoseconds(1'700'000'000'123'456'789))},
    {"dictionary", PropertyListDictionary{{"data", Data{std::byte{7}}},
                                          {"inner", PropertyListDictionary{{"text", "x"}}},
                                          {"number", std::int64_t{-5}}}},
    {"integer", std::int64_t{-5}},
    {"string", "it's text"},
    {"unsigned", std::numeric_limits<std::uint64_t>::max()},
};

class DefaultsFormatTest : public DefaultsFixture {
 protected:
  void SetUp() override { makeFolders(); }

  static std::string fixture() {
    std::ifstream stream(std::string(LANTERNFOLD_SOURCE_DIR) +
                         "/Docs/formats/fixtures/defaults-database.sql");
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  /// The database as the statements that would make it.
  [[nodiscard]] std::string statements() const {
    auto connection = SqliteConnection::open(database());
    EXPECT_TRUE(connection);
    std::string text;
    for (const char* const query :
         {"SELECT 'PRAGMA application_id = ' || application_id || ';' FROM pragma_application_id",
          "SELECT 'PRAGMA user_version = ' || user_version || ';' FROM pragma_user_version",
          "SELECT sql || ';' FROM sqlite_schema WHERE sql IS NOT NULL",
          "SELECT 'INSERT INTO setting VALUES(' || quote(key) || ',' || quote(kind) || ',' ||"
          " quote(value) || ');' FROM setting ORDER BY key"}) {
      auto statement = connection->prepare(query);
      EXPECT_TRUE(statement) << query;
      while (statement->step().value_or(false)) text += statement->text(0) + "\n";
    }
    return text;
  }
};

TEST_F(DefaultsFormatTest, IsWhatTheProgramWrites) {
  const DefaultsProgram program(data());
  for (const auto& [key, value] : settings) program.defaults->set(key, value);
  EXPECT_EQ(statements(), fixture());
}

TEST_F(DefaultsFormatTest, IsWhatTheProgramReads) {
  std::ofstream(database()).close();
  {
    auto connection = SqliteConnection::open(database());
    ASSERT_TRUE(connection && connection->execute(fixture().c_str()));
  }
  const DefaultsProgram program(data());
  for (const auto& [key, value] : settings) EXPECT_EQ(program.defaults->object(key), value) << key;
  EXPECT_EQ(program.log.lines(), std::vector<std::string>{});
}

TEST_F(DefaultsFormatTest, HasALogBesideIt) {
  const DefaultsProgram program(data());
  program.defaults->set("key", "value");
  auto connection = SqliteConnection::open(database());
  ASSERT_TRUE(connection);
  auto mode = connection->prepare("PRAGMA journal_mode");
  ASSERT_TRUE(mode && mode->step());
  EXPECT_EQ(mode->text(0), "wal");
}

}  // namespace
}  // namespace lanternfold
