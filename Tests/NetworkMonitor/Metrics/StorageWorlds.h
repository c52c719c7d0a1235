// The three storages, each in a world of its own, for tests that hold for all of them.
#pragma once

#include <memory>

#include <gtest/gtest.h>

#include "NetworkMonitor/Metrics/FileConnectionMetricsStorage.h"
#include "NetworkMonitor/Metrics/InMemoryConnectionMetricsStorage.h"
#include "NetworkMonitor/Metrics/UserDefaultsConnectionMetricsStorage.h"
#include "Tests/Support/FakeFileSystem.h"
#include "Tests/Support/FakeUserDefaults.h"
#include "Tests/Support/RecordingDiagnosticLog.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {

struct MemoryWorld {
  static constexpr bool isPersistent = false;
  static constexpr bool isLocking = false;
  static constexpr int manyInterfaces = 10'000;

  SimulatedClock clock;
  InMemoryConnectionMetricsStorage storage{clock};

  /// Makes what was registered count.
  void commit() {}
};

struct UserDefaultsWorld {
  static constexpr bool isPersistent = true;
  static constexpr bool isLocking = false;
  static constexpr int manyInterfaces = 50;  // each operation reads and writes all of them

  SimulatedClock clock;
  RecordingDiagnosticLog log;
  std::shared_ptr<FakeUserDefaults> userDefaults = std::make_shared<FakeUserDefaults>();
  UserDefaultsConnectionMetricsStorage storage{{.clock = clock, .log = log}, userDefaults};

  void commit() { ASSERT_TRUE(storage.save()); }
};

struct FileWorld {
  static constexpr bool isPersistent = true;
  static constexpr bool isLocking = true;
  static constexpr int manyInterfaces = 10'000;

  FileWorld() { disk.makeFolder("/data"); }

  SimulatedClock clock;
  SimulatedDispatch dispatch{clock};
  FakeFileSystem disk{clock};
  RecordingDiagnosticLog log;
  const FileConnectionMetricsStorage::Environment environment{
      .files = disk, .clock = clock, .dispatch = dispatch, .log = log};
  FileConnectionMetricsStorage storage{environment, "/data", "default"};

  void commit() { ASSERT_TRUE(storage.save()); }
};

}  // namespace lanternfold
