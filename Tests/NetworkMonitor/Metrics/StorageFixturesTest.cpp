// The fixtures of Docs/formats are what the file storage and its lock write and read, to the byte.
#include <chrono>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "Tests/NetworkMonitor/Metrics/StorageWorlds.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using Type = ConnectionMetricsType;

const std::string dataFile = "connection-metrics-storage_default.json";
const std::string lockFile = "connection-metrics-storage_default.lock";

constexpr ConnectionMetrics original{.sentBytes = 2000,
                                     .recvBytes = 1'500'000,
                                     .sentError = 1,
                                     .recvError = 2,
                                     .sentPacket = 30,
                                     .recvPacket = 40,
                                     .collisions = 5,
                                     .mtu = 1500};

ConnectionMetrics adjusted() {
  ConnectionMetrics metrics = original;
  metrics.sentBytes += 4'294'967'295;
  return metrics;
}

std::string fixture(const std::string& name) {
  std::ifstream stream(std::string(LANTERNFOLD_SOURCE_DIR) + "/Docs/formats/fixtures/" + name);
  return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(StorageFixtures, DataFileIsWritten) {
  FileWorld world;
  world.storage.registerMetrics(original, "en0", Type::original);
  world.storage.registerMetrics(adjusted(), "en0", Type::adjusted);
  for (const Type type : {Type::original, Type::adjusted}) {
    world.storage.registerMetrics(ConnectionMetrics::initial(1500), "wlan0", type);
  }
  ASSERT_TRUE(world.storage.save());
  EXPECT_EQ(world.disk.bytes("/data/" + dataFile), fixture(dataFile));
}

TEST(StorageFixtures, DataFileIsRead) {
  FileWorld world;
  world.disk.putFile("/data/" + dataFile, fixture(dataFile));
  const auto initial = ConnectionMetrics::initial(1500);
  EXPECT_EQ(world.storage.allMetrics(Type::original),
            ConnectionMetricsMap::of({{"en0", original}, {"wlan0", initial}}));
  EXPECT_EQ(world.storage.allMetrics(Type::adjusted),
            ConnectionMetricsMap::of({{"en0", adjusted()}, {"wlan0", initial}}));
  EXPECT_TRUE(world.log.lines().empty());
}

TEST(StorageFixtures, LockFileIsWritten) {
  FileWorld world;
  ASSERT_TRUE(world.storage.lock());
  EXPECT_EQ(world.disk.bytes("/data/" + lockFile), fixture(lockFile));
}

TEST(StorageFixtures, LockFileIsReadAndLapsesAtItsTime) {
  FileWorld world;
  world.disk.putFile("/data/" + lockFile, fixture(lockFile));
  const auto begin = world.clock.now();
  world.clock.advance(100ms);
  ASSERT_TRUE(world.storage.lock());
  EXPECT_EQ(world.clock.now() - begin, 500ms);
}

}  // namespace
}  // namespace lanternfold
