// What only the storage in memory does.
#include <chrono>

#include <gtest/gtest.h>

#include "NetworkMonitor/Metrics/InMemoryConnectionMetricsStorage.h"
#include "Tests/Support/SampleConnectionMetrics.h"
#include "Tests/Support/SimulatedClock.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using Type = ConnectionMetricsType;

TEST(InMemoryConnectionMetricsStorage, DateMovesWithEveryRegistrationAndGoesWithAReset) {
  SimulatedClock clock;
  InMemoryConnectionMetricsStorage storage(clock);
  storage.registerMetrics(oneToEight, "en0", Type::original);
  EXPECT_EQ(storage.lastRegisterDate(), clock.now());
  clock.advance(5s);
  storage.registerMetrics(oneToEight, "en1", Type::adjusted);
  EXPECT_EQ(storage.lastRegisterDate(), clock.now());
  storage.reset();
  EXPECT_EQ(storage.lastRegisterDate(), std::nullopt);
  EXPECT_EQ(storage.data(), ConnectionMetricsData());
}

TEST(InMemoryConnectionMetricsStorage, CanBeginWithRecordsAndTheirDate) {
  const SimulatedClock clock;
  const ConnectionMetricsData data{{Type::adjusted, {{"en0", oneToEight}}}};
  InMemoryConnectionMetricsStorage storage(clock, data, clock.now() - 1h);
  EXPECT_EQ(storage.lastRegisterDate(), clock.now() - 1h);
  EXPECT_EQ(storage.metrics("en0", Type::adjusted), oneToEight);
}

}  // namespace
}  // namespace lanternfold
