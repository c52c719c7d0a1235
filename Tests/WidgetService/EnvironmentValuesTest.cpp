#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "WidgetService/EnvironmentValues.h"

namespace lanternfold {
namespace {

struct GroupKey {
  using Value = std::optional<std::string>;
  static Value defaultValue() { return "group"; }
};

struct OtherGroupKey {
  using Value = std::optional<std::string>;
  static Value defaultValue() { return std::nullopt; }
};

struct FilterKey {
  using Value = int;
  static Value defaultValue() { return 7; }
};

TEST(EnvironmentValues, HaveTheDefaultOfWhatWasNotSet) {
  const EnvironmentValues values;
  EXPECT_EQ(values.get<GroupKey>(), "group");
  EXPECT_EQ(values.get<OtherGroupKey>(), std::nullopt);
  EXPECT_EQ(values.get<FilterKey>(), 7);
}

TEST(EnvironmentValues, HaveWhatWasSetLast) {
  EnvironmentValues values;
  values.set<GroupKey>("another");
  EXPECT_EQ(values.get<GroupKey>(), "another");
  values.set<GroupKey>(std::nullopt);
  EXPECT_EQ(values.get<GroupKey>(), std::nullopt);
}

TEST(EnvironmentValues, KeysOfOneValueTypeAreTwoValues) {
  EnvironmentValues values;
  values.set<OtherGroupKey>("other");
  EXPECT_EQ(values.get<GroupKey>(), "group");
  EXPECT_EQ(values.get<OtherGroupKey>(), "other");
}

TEST(EnvironmentValues, ACopyIsAValueOfItsOwn) {
  EnvironmentValues values;
  values.set<FilterKey>(1);
  EnvironmentValues copy = values;
  copy.set<FilterKey>(2);
  copy.set<GroupKey>("of the copy");
  EXPECT_EQ(values.get<FilterKey>(), 1);
  EXPECT_EQ(values.get<GroupKey>(), "group");
  values.set<FilterKey>(3);
  EXPECT_EQ(copy.get<FilterKey>(), 2);
}

TEST(EnvironmentValues, WhatWasTakenOutOutlivesThem) {
  std::optional<std::string> taken;
  {
    EnvironmentValues values;
    values.set<GroupKey>(std::string(100, 'x'));
    taken = values.get<GroupKey>();
  }
  EXPECT_EQ(taken, std::string(100, 'x'));
}

}  // namespace
}  // namespace lanternfold
