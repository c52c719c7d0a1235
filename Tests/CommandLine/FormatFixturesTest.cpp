// The fixtures of Docs/formats are what the program writes, to the byte.
#include <fstream>
#include <iterator>
#include <sstream>

#include <gtest/gtest.h>

#include "CommandLine/Program.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsJson.h"
#include "Tests/CommandLine/FakeMachine.h"

namespace lanternfold {
namespace {

std::string fixture(const std::string& name) {
  std::ifstream stream(std::string(LANTERNFOLD_SOURCE_DIR) + "/Docs/formats/fixtures/" + name);
  return {std::istreambuf_iterator<char>(stream), {}};
}

class FormatFixtures : public testing::Test {
 protected:
  void SetUp() override {
    fake_.addEthernet("en0", {192, 0, 2, 20});
    fake_.kernel.addLink("tun0", {});
  }

  std::string written(const std::vector<std::string>& arguments) {
    std::ostringstream output;
    std::ostringstream errors;
    EXPECT_EQ(runProgram(arguments, {.output = output, .errors = errors},
                         [this](const MachineOptions&) -> const Machine& { return fake_.machine; }),
              ExitStatus::done);
    return output.str();
  }

  FakeMachine fake_;
};

TEST_F(FormatFixtures, InterfacesJson) {
  EXPECT_EQ(written({"interfaces", "--json"}), fixture("interfaces.json"));
}

TEST_F(FormatFixtures, StateJson) {
  EXPECT_EQ(written({"state", "--json"}), fixture("state.json"));
}

TEST_F(FormatFixtures, RecordOnceJson) {
  EXPECT_EQ(written({"record", "--once", "--json"}), fixture("record-once.json"));
}

TEST_F(FormatFixtures, RecordJson) {
  EXPECT_EQ(written({"record", "--json", "--interval", "86400"}), fixture("record.json"));
}

TEST_F(FormatFixtures, ConnectionMetricsJson) {
  const ConnectionMetrics metrics{.sentBytes = 2000,
                                  .recvBytes = 1'500'000,
                                  .sentError = 1,
                                  .recvError = 2,
                                  .sentPacket = 30,
                                  .recvPacket = 40,
                                  .collisions = 5,
                                  .mtu = 1500};
  EXPECT_EQ(encodeConnectionMetrics(metrics) + "\n", fixture("connection-metrics.json"));
  EXPECT_EQ(decodeConnectionMetrics(fixture("connection-metrics.json")), metrics);
}

}  // namespace
}  // namespace lanternfold
