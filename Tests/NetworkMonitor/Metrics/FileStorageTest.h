// A file storage on a fake disk, with another program that saves beside it.
#pragma once

#include <filesystem>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "NetworkMonitor/Metrics/ConnectionMetricsFileJson.h"
#include "Tests/NetworkMonitor/Metrics/StorageWorlds.h"

namespace lanternfold {

class FileStorageTest : public testing::Test {
 protected:
  using Type = ConnectionMetricsType;

  static ConnectionMetrics sent(std::uint64_t bytes) { return {.sentBytes = bytes, .mtu = 1500}; }
  /// A file that holds one original record.
  static std::string fileOf(std::string name, const ConnectionMetrics& metrics) {
    return encodeConnectionMetricsFile({{Type::original, {{std::move(name), metrics}}}})->text;
  }
  /// A storage of another program, or of this one after a restart.
  FileConnectionMetricsStorage opened(std::string_view name = "default") {
    return {world_.environment, "/data", name};
  }
  /// Another program saves one record.
  void saveElsewhere(const std::string& name, const ConnectionMetrics& metrics) {
    ASSERT_TRUE(world_.disk.replaceFile(url, fileOf(name, metrics)));
  }
  ConnectionMetricsMap originals() { return storage_.allMetrics(Type::original); }

  const std::filesystem::path url = "/data/connection-metrics-storage_default.json";
  const std::filesystem::path lockUrl = "/data/connection-metrics-storage_default.lock";
  FileWorld world_;
  FakeFileSystem& disk_ = world_.disk;
  FileConnectionMetricsStorage& storage_ = world_.storage;
};

}  // namespace lanternfold
