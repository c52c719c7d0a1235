// Several programs on one suite at once, and programs that are killed.
#include <random>
#include <thread>

#include "Tests/PlatformLinux/ChildProcess.h"
#include "Tests/PlatformLinux/Defaults/DefaultsFixture.h"

namespace lanternfold {
namespace {

using SharedDefaultsTest = DefaultsFixture;

TEST_F(SharedDefaultsTest, NoUpdateOfTwoProgramsIsLost) {
  constexpr int sets = 1500;
  const auto writer = [this](const std::string& name) {
    return [this, name] {
      const DefaultsProgram program(data());
      for (int count = 1; count <= sets; ++count) {
        program.defaults->set(name + std::to_string(count), std::int64_t{count});
        program.defaults->set(name, std::int64_t{count});
        if (count % 10 == 0) program.defaults->remove(name + std::to_string(count));
        if (program.integer(name) != count) return 1;
      }
      return program.synchronized().empty() && program.log.lines().empty() ? 0 : 2;
    };
  };
  ChildProcess first(writer("a"));
  ChildProcess second(writer("b"));
  EXPECT_EQ(first.wait(), 0);
  EXPECT_EQ(second.wait(), 0);
  const DefaultsProgram program(data());
  for (const std::string name : {"a", "b"}) {
    EXPECT_EQ(program.integer(name), sets);
    for (int count = 1; count <= sets; ++count) {
      ASSERT_EQ(program.integer(name + std::to_string(count)), count % 10 == 0 ? 0 : count);
    }
  }
}

TEST_F(SharedDefaultsTest, ProgramsThatBeginAtOnceMakeOneDatabase) {
  for (int round = 0; round < 10; ++round) {
    std::filesystem::remove_all(data());
    std::vector<std::unique_ptr<ChildProcess>> children;
    for (int number = 0; number < 6; ++number) {
      children.push_back(std::make_unique<ChildProcess>([this, number] {
        const DefaultsProgram program(data());
        program.defaults->set(std::to_string(number), std::int64_t{number + 1});
        return program.synchronized().empty() && program.log.lines().empty() ? 0 : 1;
      }));
    }
    for (const auto& child : children) EXPECT_EQ(child->wait(), 0);
    const DefaultsProgram program(data());
    for (int number = 0; number < 6; ++number) {
      EXPECT_EQ(program.integer(std::to_string(number)), number + 1);
    }
  }
}

TEST_F(SharedDefaultsTest, ThreadsOfOneProgramShareASuite) {
  const DefaultsProgram program(data());
  std::vector<std::thread> threads;
  for (const std::string name : {"a", "b", "c"}) {
    threads.emplace_back([&program, name] {
      for (int count = 1; count <= 200; ++count) {
        program.defaults->set(name, std::int64_t{count});
        EXPECT_EQ(program.integer(name), count);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const char* const name : {"a", "b", "c"}) EXPECT_EQ(program.integer(name), 200);
}

TEST_F(SharedDefaultsTest, AProgramKilledAtAnyMomentLeavesWholeValues) {
  constexpr int kills = 100;
  constexpr int mostKills = 2000;
  std::mt19937 random(20'261'121);
  std::uniform_int_distribution<int> pause(0, 15'000);
  std::int64_t reached = 0;
  // A busy machine comes to little between two kills.
  for (int kill = 0; kill < kills || (reached <= kills && kill < mostKills); ++kill) {
    ChildProcess child([this] {
      const DefaultsProgram program(data());
      for (std::int64_t count = program.integer("count") + 1;; ++count) {
        PropertyListDictionary dictionary;
        for (int index = 0; index < 50; ++index) dictionary.append(std::to_string(index), count);
        program.defaults->set("dictionary", dictionary);
        program.defaults->set("count", count);
        if (count % 5 == 0 && !program.synchronized().empty()) return 1;
      }
    });
    std::this_thread::sleep_for(std::chrono::microseconds(pause(random)));
    ASSERT_EQ(child.kill(), 256 + SIGKILL);

    const DefaultsProgram program(data());
    const auto value = program.defaults->object("dictionary").value();
    const std::int64_t count = program.integer("count");
    if (value) {
      const PropertyListDictionary* dictionary = value->asDictionary();
      ASSERT_NE(dictionary, nullptr);
      ASSERT_EQ(dictionary->size(), 50U);
      const auto first = dictionary->entries().front().second.asInteger();
      for (const auto& entry : dictionary->entries()) ASSERT_EQ(entry.second.asInteger(), first);
      ASSERT_TRUE(first == count || first == count + 1) << *first << " after " << count;
    } else {
      ASSERT_EQ(count, 0);
    }
    reached = count;
    ASSERT_EQ(program.synchronized(), "");
    ASSERT_EQ(program.log.lines(), std::vector<std::string>{}) << "after kill " << kill;
  }
  EXPECT_GT(reached, kills);
}

TEST_F(SharedDefaultsTest, AProgramKilledWhileItMakesTheDatabaseIsNoDamage) {
  std::mt19937 random(20'261'121);
  std::uniform_int_distribution<int> pause(0, 6000);
  for (int kill = 0; kill < 60; ++kill) {
    std::filesystem::remove_all(data());
    ChildProcess child([this] {
      const DefaultsProgram program(data());
      program.defaults->set("key", "value");
      return 0;
    });
    std::this_thread::sleep_for(std::chrono::microseconds(pause(random)));
    (void)child.kill();
    const DefaultsProgram program(data());
    program.defaults->set("key", "new");
    ASSERT_EQ(program.synchronized(), "");
    ASSERT_EQ(program.defaults->object("key"), PropertyListValue("new"));
    ASSERT_EQ(program.log.lines(), std::vector<std::string>{}) << "after kill " << kill;
  }
}

}  // namespace
}  // namespace lanternfold
