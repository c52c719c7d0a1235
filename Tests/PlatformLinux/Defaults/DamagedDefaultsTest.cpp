// Databases that are not what they should be: set aside with a word, and begun anew.
#include <fstream>

#include "Tests/PlatformLinux/ChildProcess.h"
#include "Tests/PlatformLinux/Defaults/DefaultsFixture.h"

namespace lanternfold {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

std::string bytesOf(const fs::path& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

class DamagedDefaultsTest : public DefaultsFixture {
 protected:
  void SetUp() override { makeFolders(); }

  void write(std::string_view bytes) const {
    std::ofstream(database(), std::ios::binary | std::ios::trunc) << bytes;
  }
  /// A database with many pages.
  void makeGood() const {
    const DefaultsProgram program(data());
    for (int index = 0; index < 200; ++index) {
      program.defaults->set("key" + std::to_string(index), std::string(1000, 'v'));
    }
    EXPECT_EQ(program.synchronized(), "");
  }
  /// Runs statements of another program on the database.
  void run(const char* statements) const {
    auto connection = SqliteConnection::open(database());
    ASSERT_TRUE(connection);
    const auto done = connection->execute(statements);
    ASSERT_TRUE(done) << done.error().reason;
  }
  /// One run of a program that finds the damage, and the next one.
  void expectSetAside(std::string_view reason) const {
    {
      const DefaultsProgram program(data());
      EXPECT_EQ(program.defaults->object("key0"), std::nullopt);
      program.defaults->set("key", "new");
      EXPECT_EQ(program.synchronized(), "");
      ASSERT_EQ(program.log.lines().size(), 1U);
      EXPECT_THAT(program.log.lines().front(), HasSubstr(reason));
      EXPECT_THAT(program.log.lines().front(), HasSubstr(database().string()));
      EXPECT_THAT(program.log.lines().front(), HasSubstr("standard.sqlite.damaged-1"));
    }
    const DefaultsProgram next(data());
    EXPECT_EQ(next.defaults->object("key"), PropertyListValue("new"));
    EXPECT_EQ(next.log.lines(), std::vector<std::string>{});
  }
};

TEST_F(DamagedDefaultsTest, GarbageIsSetAsideAsItIs) {
  const std::string garbage(5000, '\x5A');
  write(garbage);
  expectSetAside("not a database");
  EXPECT_EQ(bytesOf(defaultsFolder() / "standard.sqlite.damaged-1"), garbage);
}

TEST_F(DamagedDefaultsTest, AFewBytesAreSetAside) {
  write("x");
  expectSetAside("too short");
}

TEST_F(DamagedDefaultsTest, AFileCutInItsFirstPageIsSetAside) {
  makeGood();
  fs::resize_file(database(), 1000);
  expectSetAside("malformed");
}

TEST_F(DamagedDefaultsTest, AnEmptyFileIsABeginning) {
  write("");
  const DefaultsProgram program(data());
  program.defaults->set("key", "value");
  EXPECT_EQ(program.synchronized(), "");
  EXPECT_EQ(program.log.lines(), std::vector<std::string>{});
}

TEST_F(DamagedDefaultsTest, AFolderInItsPlaceIsSetAside) {
  fs::create_directories(database() / "inner");
  expectSetAside("not a file");
  EXPECT_TRUE(fs::is_directory(defaultsFolder() / "standard.sqlite.damaged-1/inner"));
}

TEST_F(DamagedDefaultsTest, ATruncatedDatabaseIsSetAsideOnceItShows) {
  makeGood();
  fs::resize_file(database(), 4096 * 3);
  const DefaultsProgram program(data());
  for (int index = 0; index < 200; ++index) {
    program.defaults->set("key" + std::to_string(index), "new");
  }
  EXPECT_EQ(program.synchronized(), "");
  EXPECT_EQ(program.log.lines().size(), 1U);
  EXPECT_TRUE(fs::exists(defaultsFolder() / "standard.sqlite.damaged-1"));
}

TEST_F(DamagedDefaultsTest, AFileCutInItsHeaderIsSetAside) {
  makeGood();
  fs::resize_file(database(), 60);
  expectSetAside("too short");
}

TEST_F(DamagedDefaultsTest, TheDatabaseOfAnotherProgramIsSetAsideWhole) {
  write("");
  run("CREATE TABLE bookmark (title TEXT); INSERT INTO bookmark VALUES ('mine')");
  const std::string before = bytesOf(database());
  expectSetAside("another program");
  EXPECT_EQ(bytesOf(defaultsFolder() / "standard.sqlite.damaged-1"), before);
}

TEST_F(DamagedDefaultsTest, OtherTablesThanOursAreSetAside) {
  makeGood();
  run("CREATE TABLE other (a); ");
  expectSetAside("tables");
}

TEST_F(DamagedDefaultsTest, AnotherShapeOfOurTableIsSetAside) {
  makeGood();
  run("DROP TABLE setting; CREATE TABLE setting (key, kind, value)");
  expectSetAside("tables");
}

TEST_F(DamagedDefaultsTest, AViewOrATriggerIsNeverRun) {
  makeGood();
  run("CREATE TRIGGER evil AFTER INSERT ON setting BEGIN DELETE FROM setting; END");
  expectSetAside("tables");
}

TEST_F(DamagedDefaultsTest, AnEarlierVersionThatNeverWasIsSetAside) {
  makeGood();
  run("PRAGMA user_version = -1");
  expectSetAside("tables");
}

TEST_F(DamagedDefaultsTest, ALaterVersionIsLeftAloneAndSaidOnce) {
  makeGood();
  run("CREATE TABLE newer (a); PRAGMA user_version = 2");
  const std::string before = bytesOf(database());
  {
    DefaultsProgram program(data());
    EXPECT_THAT(program.unread("key0"), HasSubstr("cannot be read: a later version"));
    program.defaults->set("key", "mine");
    EXPECT_EQ(program.defaults->object("key"), PropertyListValue("mine"));
    EXPECT_THAT(program.synchronized(), HasSubstr("later version"));
    EXPECT_THAT(program.synchronized(), HasSubstr("--data-dir"));
    ASSERT_EQ(program.log.lines().size(), 1U);
    EXPECT_THAT(program.log.lines().front(), HasSubstr("later version"));
  }
  EXPECT_EQ(bytesOf(database()), before);
  EXPECT_FALSE(fs::exists(defaultsFolder() / "standard.sqlite.damaged-1"));
}

TEST_F(DamagedDefaultsTest, RowsThatCannotBeReadAnswerNone) {
  makeGood();
  run("INSERT INTO setting VALUES ('a', 'integer', 'text'), ('b', 'wrong', 5),"
      "('c', 'dictionary', x'A161'), ('d', 'string', x'41'), ('e', 'data', 1.5),"
      "('f', x'FF', 'text'), ('g', 'unsigned', '-1'), ('h', 'date', 'today'),"
      "('i', 'integer', 5)");
  const DefaultsProgram program(data());
  for (const char* const key : {"a", "b", "c", "d", "e", "f", "g", "h"}) {
    EXPECT_EQ(program.defaults->object(key), std::nullopt) << key;
    program.defaults->set(key, "anew");
    EXPECT_EQ(program.defaults->object(key), PropertyListValue("anew"));
  }
  EXPECT_EQ(program.integer("i"), 5);
  EXPECT_EQ(program.log.lines(), std::vector<std::string>{});
}

TEST_F(DamagedDefaultsTest, PagesThatAreFoundDamagedLaterAreSetAsideWithTheirLog) {
  makeGood();
  const DefaultsProgram program(data());
  EXPECT_EQ(program.defaults->object("key0"), PropertyListValue(std::string(1000, 'v')));
  program.defaults->set("fresh", "in the log");
  // Another hand overwrites every page but the first while the program has it open.
  std::fstream file(database(), std::ios::binary | std::ios::in | std::ios::out);
  const auto size = fs::file_size(database());
  file.seekp(4096);
  file << std::string(size - 4096, '\x5A');
  file.close();
  {
    const DefaultsProgram other(data());
    for (int index = 0; index < 200; ++index) {
      (void)other.defaults->object("key" + std::to_string(index));
    }
    other.defaults->set("key", "new");
    EXPECT_EQ(other.synchronized(), "");
    EXPECT_EQ(other.log.lines().size(), 1U);
    EXPECT_EQ(other.defaults->object("key"), PropertyListValue("new"));
  }
  EXPECT_TRUE(fs::exists(defaultsFolder() / "standard.sqlite.damaged-1-wal"));
  // The program that had it open goes on with the new one.
  EXPECT_EQ(program.defaults->object("key"), PropertyListValue("new"));
  program.defaults->set("key", "newer");
  EXPECT_EQ(DefaultsProgram(data()).defaults->object("key"), PropertyListValue("newer"));
  EXPECT_EQ(program.log.lines(), std::vector<std::string>{});
}

TEST_F(DamagedDefaultsTest, ADatabaseRemovedWhileItIsOpenBeginsAnew) {
  const DefaultsProgram program(data());
  program.defaults->set("old", "value");
  fs::remove(database());
  EXPECT_EQ(program.defaults->object("old"), std::nullopt);
  program.defaults->set("key", "value");
  EXPECT_EQ(program.synchronized(), "");
  const DefaultsProgram next(data());
  EXPECT_EQ(next.defaults->object("key"), PropertyListValue("value"));
  EXPECT_EQ(next.defaults->object("old"), std::nullopt);
}

TEST_F(DamagedDefaultsTest, TheWholeFolderRemovedWhileItIsOpenBeginsAnew) {
  const DefaultsProgram program(data());
  program.defaults->set("old", "value");
  fs::remove_all(data());
  program.defaults->set("key", "value");
  EXPECT_EQ(program.synchronized(), "");
  EXPECT_EQ(DefaultsProgram(data()).defaults->object("key"), PropertyListValue("value"));
}

TEST_F(DamagedDefaultsTest, EarlierOnesThatWereSetAsideStay) {
  for (int number = 1; number <= 3; ++number) {
    write("garbage " + std::to_string(number));
    const DefaultsProgram program(data());
    EXPECT_EQ(program.defaults->object("key"), std::nullopt);
  }
  for (int number = 1; number <= 3; ++number) {
    EXPECT_EQ(bytesOf(defaultsFolder() / ("standard.sqlite.damaged-" + std::to_string(number))),
              "garbage " + std::to_string(number));
  }
}

TEST_F(DamagedDefaultsTest, OneThatIsDamagedAgainAndAgainIsGivenUp) {
  const DefaultsProgram program(data());
  program.defaults->set("key", "value");
  for (int count = 0; count < 6; ++count) {
    fs::remove(database());
    write("garbage");
    program.defaults->set("key", std::int64_t{count});
    EXPECT_EQ(program.integer("key"), count);
  }
  EXPECT_THAT(program.synchronized(), HasSubstr("again and again"));
  EXPECT_EQ(program.log.lines().size(), 3U);
}

TEST_F(DamagedDefaultsTest, AFolderFullOfWhatWasSetAsideIsGivenUp) {
  for (int number = 1; number <= 20; ++number) {
    std::ofstream(defaultsFolder() / ("standard.sqlite.damaged-" + std::to_string(number))) << "x";
  }
  write("garbage");
  const DefaultsProgram program(data());
  program.defaults->set("key", "value");
  EXPECT_EQ(program.defaults->object("key"), PropertyListValue("value"));
  EXPECT_THAT(program.synchronized(), HasSubstr("remove what was set aside"));
  EXPECT_EQ(bytesOf(database()), "garbage");
}

TEST_F(DamagedDefaultsTest, ManyProgramsThatFindItAtOnceSetItAsideOnce) {
  constexpr int programs = 8;
  for (int round = 0; round < 5; ++round) {
    fs::remove_all(defaultsFolder());
    makeFolders();
    write(std::string(5000, '\x5A'));
    std::vector<std::unique_ptr<ChildProcess>> children;
    for (int number = 0; number < programs; ++number) {
      children.push_back(std::make_unique<ChildProcess>([this, number] {
        const DefaultsProgram program(data());
        program.defaults->set("key" + std::to_string(number), std::int64_t{number + 1});
        return program.synchronized().empty() ? static_cast<int>(program.log.lines().size()) : 100;
      }));
    }
    int lines = 0;
    for (const auto& child : children) lines += child->wait();
    EXPECT_EQ(lines, 1);
    EXPECT_FALSE(fs::exists(defaultsFolder() / "standard.sqlite.damaged-2"));
    const DefaultsProgram program(data());
    for (int number = 0; number < programs; ++number) {
      EXPECT_EQ(program.integer("key" + std::to_string(number)), number + 1);
    }
  }
}

}  // namespace
}  // namespace lanternfold
