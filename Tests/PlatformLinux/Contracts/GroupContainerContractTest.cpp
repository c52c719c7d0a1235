// What every side of the group-container seam promises.
#include "PlatformLinux/Defaults/LinuxGroupContainer.h"
#include "Tests/Support/FakeGroupContainer.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {
namespace {

class LinuxWorld {
 public:
  [[nodiscard]] GroupContainer& container() { return container_; }

 private:
  TemporaryFolder folder_;
  DataDirectory directory_{folder_ / "data"};
  LinuxGroupContainer container_{directory_};
};

class FakeWorld {
 public:
  [[nodiscard]] GroupContainer& container() { return container_; }

 private:
  SimulatedClock clock_;
  FakeFileSystem disk_{clock_};
  FakeGroupContainer container_{disk_};
};

template <typename World>
class GroupContainerContract : public testing::Test {
 protected:
  [[nodiscard]] GroupContainer& container() { return world_.container(); }

  World world_;
};

class WorldNames {
 public:
  template <typename World>
  static std::string GetName(int) {
    return std::is_same_v<World, LinuxWorld> ? "Linux" : "Fake";
  }
};

using Worlds = testing::Types<LinuxWorld, FakeWorld>;
TYPED_TEST_SUITE(GroupContainerContract, Worlds, WorldNames);

TYPED_TEST(GroupContainerContract, AGroupHasOneFolder) {
  const auto folder = this->container().folder("group.example.widgets");
  ASSERT_TRUE(folder);
  EXPECT_TRUE(folder->is_absolute());
  EXPECT_EQ(this->container().folder("group.example.widgets"), folder);
}

TYPED_TEST(GroupContainerContract, GroupsAndWhatBelongsToNoneHaveFoldersOfTheirOwn) {
  const auto first = this->container().folder("a");
  const auto second = this->container().folder("b");
  const auto metrics = this->container().folder("metrics");
  const auto none = this->container().metricsFolder();
  ASSERT_TRUE(first && second && metrics && none);
  EXPECT_EQ((std::set{*first, *second, *metrics, *none}).size(), 4U);
  EXPECT_EQ(this->container().metricsFolder(), none);
}

TYPED_TEST(GroupContainerContract, WhatIsNoGroupIdentifierHasNoFolder) {
  for (const std::string& name :
       {std::string(), std::string("."), std::string(".."), std::string("../a"), std::string("a/b"),
        std::string("-a"), std::string("a b"), std::string("a\0b", 3), std::string("gr\xC3\xBC"),
        std::string(129, 'a')}) {
    const auto folder = this->container().folder(name);
    ASSERT_FALSE(folder) << name;
    EXPECT_NE(folder.error(), "");
  }
  EXPECT_TRUE(this->container().folder(std::string(128, 'a')));
}

}  // namespace
}  // namespace lanternfold
