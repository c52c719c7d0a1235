#include "NetworkMonitor/Metrics/ConnectionMetricsError.h"

namespace lanternfold {
namespace {

TEST(ConnectionMetricsErrorTest, DescriptionIsThatOfWhatFailed) {
  EXPECT_EQ(describe(ConnectionMetricsError(ConnectionMetricsReaderError::failedGetIf)),
            "the counters of the network interfaces could not be read");
  const LockError timeout{.value = LockError::Case::lockTimeout, .underlying = std::nullopt};
  EXPECT_EQ(describe(ConnectionMetricsError(timeout)), describe(timeout));
  EXPECT_EQ(describe(ConnectionMetricsError(MetricsSaveError{"the disk is full"})),
            "the disk is full");
}

TEST(ConnectionMetricsErrorTest, ErrorsAreEqualWhenTheSameOperationFailedForTheSameReason) {
  const ConnectionMetricsError read = ConnectionMetricsReaderError::failedGetIf;
  const ConnectionMetricsError full = MetricsSaveError{"the disk is full"};
  EXPECT_EQ(read, ConnectionMetricsError(ConnectionMetricsReaderError::failedGetIf));
  EXPECT_NE(read, full);
  EXPECT_NE(full, ConnectionMetricsError(MetricsSaveError{"the folder is gone"}));
}

}  // namespace
}  // namespace lanternfold
