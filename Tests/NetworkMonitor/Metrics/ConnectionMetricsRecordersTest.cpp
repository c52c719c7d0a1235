#include "NetworkMonitor/Metrics/ConnectionMetricsRecorders.h"
#include "Tests/NetworkMonitor/Metrics/RecorderMachine.h"
#include "Tests/Support/FakeFileSystem.h"
#include "Tests/Support/FakeUserDefaults.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

class ConnectionMetricsRecordersTest : public testing::Test {
 protected:
  ConnectionMetricsRecordersTest() {
    files.makeFolder("/data");
    machine.kernel.addLink("en0");
    setSent(4'294'967'000);
  }

  void setSent(std::uint64_t bytes) { machine.kernel.setCounters("en0", {.sentBytes = bytes}); }

  RecorderMachine machine;
  FakeFileSystem files{machine.clock};
  FakeUserDefaultsSuites suites;
  ConnectionMetricsRecorders recorders{{.kernel = machine.kernel,
                                        .files = files,
                                        .userDefaults = suites,
                                        .dispatch = machine.dispatch,
                                        .clock = machine.clock,
                                        .diagnostics = machine.log}};
};

TEST_F(ConnectionMetricsRecordersTest, InMemoryIsOneRecorderForAll) {
  const auto recorder = recorders.inMemory();
  EXPECT_EQ(recorders.inMemory(), recorder);
  EXPECT_EQ(textOf(recorder->onceSync()), "en0 0/0");
  setSent(4'294'967'296 + 100);
  EXPECT_EQ(textOf(recorders.inMemory()->onceSync()), "en0 395/0") << "32-bit counters wrapped";
}

TEST_F(ConnectionMetricsRecordersTest, PersistentIsOneRecorderForAllOnTheStandardDefaults) {
  const auto recorder = recorders.persistent();
  EXPECT_EQ(recorders.persistent(), recorder);
  EXPECT_EQ(textOf(recorder->onceSync()), "en0 4294967000/0");
  const auto date =
      suites.standard()->object("UserDefaultsConnectionMetricsStorage__lastRegisterDate");
  EXPECT_TRUE(date && *date);
}

TEST_F(ConnectionMetricsRecordersTest, PersistentOnASuiteIsANewOneEachTime) {
  const auto suite = suites.suite("group.net.example");
  ASSERT_NE(suite, nullptr);
  const auto recorder = recorders.persistent(suite);
  EXPECT_NE(recorders.persistent(suite), recorder);
  static_cast<void>(recorder->onceSync());
  EXPECT_EQ(textOf(recorders.persistent(suite)->allMetrics()), "en0 4294967000/0");
  EXPECT_TRUE(recorders.persistent()->allMetrics().empty()) << "another suite";
}

TEST_F(ConnectionMetricsRecordersTest, PersistentInAFolderIsANewOneEachTimeOverTheNamedFile) {
  const auto recorder = recorders.persistent("/data", "widget");
  EXPECT_NE(recorders.persistent("/data", "widget"), recorder);
  static_cast<void>(recorder->onceSync());
  EXPECT_TRUE(files.bytes("/data/connection-metrics-storage_widget.json"));
  EXPECT_EQ(textOf(recorders.persistent("/data", "widget")->allMetrics()), "en0 4294967000/0");
  EXPECT_TRUE(recorders.persistent("/data")->allMetrics().empty()) << "another file";
}

TEST_F(ConnectionMetricsRecordersTest, NameIsDefaultUnlessGiven) {
  static_cast<void>(recorders.persistent("/data")->onceSync());
  EXPECT_TRUE(files.bytes("/data/connection-metrics-storage_default.json"));
  EXPECT_EQ(textOf(recorders.persistent("/data", "default")->allMetrics()), "en0 4294967000/0");
}

TEST_F(ConnectionMetricsRecordersTest, RebootIsSeenThroughTheKernel) {
  const auto recorder = recorders.persistent("/data");
  static_cast<void>(recorder->onceSync());
  machine.clock.advance(60s);
  machine.kernel.setBootTime(machine.clock.now() - 1s);
  setSent(5);
  EXPECT_EQ(textOf(recorder->onceSync()), "en0 5/0");
}

TEST_F(ConnectionMetricsRecordersTest, ThresholdsAreTheStandardOnes) {
  const auto recorder = recorders.persistent("/data");
  setSent(0);
  static_cast<void>(recorder->onceSync());
  machine.clock.advance(1s);
  setSent(499'999);
  static_cast<void>(recorder->onceSync());
  EXPECT_EQ(recorder->currentBandwidthClass(), ConnectionBandwidthClass::idle);
  machine.clock.advance(1s);
  setSent(999'999);
  static_cast<void>(recorder->onceSync());
  EXPECT_EQ(recorder->currentBandwidthClass(), ConnectionBandwidthClass::low);
}

TEST_F(ConnectionMetricsRecordersTest, UnreadableKernelFailsTheSample) {
  machine.kernel.fail(FakeNetworkKernel::Table::addressEntries, NetworkKernelError::refused);
  EXPECT_EQ(recorders.inMemory()->onceSync().error(),
            ConnectionMetricsError(ConnectionMetricsReaderError::failedGetIf));
}

}  // namespace
}  // namespace lanternfold
