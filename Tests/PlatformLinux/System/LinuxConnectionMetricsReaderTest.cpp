#include <gtest/gtest.h>

#include "PlatformLinux/System/LinuxConnectionMetricsReader.h"

namespace lanternfold::test {
namespace {

using Answer = std::expected<ConnectionMetricsMap, NetworkKernelError>;

class FixedSource final : public CounterSource {
 public:
  FixedSource(Answer answer, int& reads) : answer_(std::move(answer)), reads_(&reads) {}

  Answer read() override {
    ++*reads_;
    return answer_;
  }

 private:
  Answer answer_;
  int* reads_;
};

ConnectionMetricsMap mapOf(const char* name) {
  return ConnectionMetricsMap::of({{name, ConnectionMetrics::initial(1500)}});
}

struct Reads {
  int first = 0;
  int second = 0;
};

LinuxConnectionMetricsReader readerOf(Answer first, Answer second, Reads& reads) {
  LinuxConnectionMetricsReader::Sources sources;
  sources.push_back(std::make_unique<FixedSource>(std::move(first), reads.first));
  sources.push_back(std::make_unique<FixedSource>(std::move(second), reads.second));
  return LinuxConnectionMetricsReader(std::move(sources));
}

TEST(LinuxConnectionMetricsReader, TheFirstSourceThatAnswersServes) {
  Reads reads;
  auto reader = readerOf(mapOf("fast"), mapOf("slow"), reads);
  EXPECT_NE(reader.read().value().find("fast"), nullptr);
  EXPECT_EQ(reads.second, 0);
  EXPECT_FALSE(reader.is32bitCapped());
}

TEST(LinuxConnectionMetricsReader, ARefusedSourceGivesWayToTheNext) {
  Reads reads;
  auto reader = readerOf(std::unexpected(NetworkKernelError::refused), mapOf("slow"), reads);
  EXPECT_NE(reader.read().value().find("slow"), nullptr);
  EXPECT_EQ(reads.first, 1);
}

TEST(LinuxConnectionMetricsReader, WhenAllAreRefusedTheReadingFails) {
  Reads reads;
  auto reader = readerOf(std::unexpected(NetworkKernelError::refused),
                         std::unexpected(NetworkKernelError::failed), reads);
  EXPECT_EQ(reader.read().error(),
            ConnectionMetricsError(ConnectionMetricsReaderError::failedGetIf));
}

}  // namespace
}  // namespace lanternfold::test
