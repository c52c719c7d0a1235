#include <functional>

#include <gtest/gtest.h>

#include "Rendering/BoundedCache.h"

namespace lanternfold {
namespace {

using Cache = BoundedCache<int, int, std::hash<int>, std::equal_to<>>;

TEST(BoundedCache, GivesWhatItKeeps) {
  Cache cache(4);
  EXPECT_EQ(cache.find(1), nullptr);
  EXPECT_EQ(cache.keep(1, 10), 10);
  ASSERT_NE(cache.find(1), nullptr);
  EXPECT_EQ(*cache.find(1), 10);
}

TEST(BoundedCache, ReplacesTheValueOfAKey) {
  Cache cache(4);
  cache.keep(1, 10);
  cache.keep(1, 11);
  EXPECT_EQ(*cache.find(1), 11);
  EXPECT_EQ(cache.size(), 1U);
}

TEST(BoundedCache, HoldsTwoGenerationsAndNoMore) {
  Cache cache(4);
  for (int key = 0; key < 1000; ++key) {
    cache.keep(key, key);
    EXPECT_LE(cache.size(), 8U);
  }
  EXPECT_EQ(cache.find(0), nullptr);
  EXPECT_NE(cache.find(999), nullptr);
}

TEST(BoundedCache, KeepsWhatIsAskedForAgain) {
  Cache cache(4);
  cache.keep(-1, 10);
  for (int key = 0; key < 1000; ++key) {
    cache.keep(key, key);
    ASSERT_NE(cache.find(-1), nullptr) << key;
    EXPECT_EQ(*cache.find(-1), 10);
  }
}

}  // namespace
}  // namespace lanternfold
