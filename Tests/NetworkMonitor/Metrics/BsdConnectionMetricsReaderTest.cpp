#include <limits>

#include <gtest/gtest.h>

#include "NetworkMonitor/Metrics/BsdConnectionMetricsReader.h"
#include "Tests/Support/FakeNetworkKernel.h"

namespace lanternfold {
namespace {

using Table = FakeNetworkKernel::Table;

AddressEntry linkEntry(const char* name, LinkStatistics32 statistics) {
  return {.name = name, .address = LinkAddress{}, .netmask = {}, .statistics = statistics};
}

AddressEntry ipv4Entry(const char* name) {
  return {.name = name,
          .address = IPv4Bytes{10, 0, 0, 1},
          .netmask = IPv4Bytes{255, 0, 0, 0},
          .statistics = {}};
}

class BsdConnectionMetricsReaderTest : public testing::Test {
 protected:
  FakeNetworkKernel kernel;
  BsdConnectionMetricsReader reader{kernel};
};

TEST_F(BsdConnectionMetricsReaderTest, CountersAre32BitCapped) {
  EXPECT_TRUE(reader.is32bitCapped());
}

TEST_F(BsdConnectionMetricsReaderTest, ReadsEveryFieldOfALink) {
  kernel.setAddressEntries({linkEntry("en0", {.sentBytes = 1,
                                              .recvBytes = 2,
                                              .sentErrors = 3,
                                              .recvErrors = 4,
                                              .sentPackets = 5,
                                              .recvPackets = 6,
                                              .collisions = 7,
                                              .mtu = 1500})});
  const ConnectionMetrics expected{.sentBytes = 1,
                                   .recvBytes = 2,
                                   .sentError = 3,
                                   .recvError = 4,
                                   .sentPacket = 5,
                                   .recvPacket = 6,
                                   .collisions = 7,
                                   .mtu = 1500};
  const auto counters = reader.read();
  ASSERT_TRUE(counters);
  ASSERT_EQ(counters->size(), 1U);
  ASSERT_NE(counters->find("en0"), nullptr);
  EXPECT_EQ(*counters->find("en0"), expected);
}

TEST_F(BsdConnectionMetricsReaderTest, WidensTheLargest32BitCounter) {
  constexpr auto largest = std::numeric_limits<std::uint32_t>::max();
  kernel.setAddressEntries({linkEntry("en0", {.sentBytes = largest, .recvBytes = largest})});
  EXPECT_EQ(reader.read()->find("en0")->totalBytes(), 2 * std::uint64_t{largest});
}

TEST_F(BsdConnectionMetricsReaderTest, CountersWrapAt32Bits) {
  kernel.addLink("en0");
  kernel.setCounters("en0", {.recvBytes = (std::uint64_t{1} << 32U) + 5});
  EXPECT_EQ(reader.read()->find("en0")->recvBytes, 5U);
}

TEST_F(BsdConnectionMetricsReaderTest, OfSeveralLinkEntriesOfAnInterfaceTheLastOneCounts) {
  kernel.setAddressEntries({linkEntry("en0", {.sentBytes = 1}), linkEntry("en1", {.sentBytes = 9}),
                            linkEntry("en0", {.sentBytes = 2}),
                            linkEntry("en0", {.sentBytes = 3})});
  const auto counters = reader.read();
  ASSERT_EQ(counters->size(), 2U);
  EXPECT_EQ(counters->find("en0")->sentBytes, 3U);
  EXPECT_EQ(counters->find("en1")->sentBytes, 9U);
}

TEST_F(BsdConnectionMetricsReaderTest, InterfaceWithOnlyInternetEntriesDoesNotAppear) {
  kernel.setAddressEntries(
      {ipv4Entry("en0"),
       {.name = "en1", .address = IPv6Bytes{}, .netmask = IPv6Bytes{}, .statistics = {}},
       {.name = "en2", .address = OtherAddress{}, .netmask = {}, .statistics = {}}});
  const auto counters = reader.read();
  ASSERT_TRUE(counters);
  EXPECT_TRUE(counters->empty());
}

TEST_F(BsdConnectionMetricsReaderTest, TunnelWithAnAddressOfZeroBytesAppears) {
  kernel.addLink("tun0", {});
  EXPECT_NE(reader.read()->find("tun0"), nullptr);
}

TEST_F(BsdConnectionMetricsReaderTest, LinkEntryWithoutStatisticsCountsNothing) {
  kernel.setAddressEntries(
      {{.name = "en0", .address = LinkAddress{}, .netmask = {}, .statistics = {}}});
  EXPECT_EQ(*reader.read()->find("en0"), ConnectionMetrics::empty());
}

TEST_F(BsdConnectionMetricsReaderTest, EmptyListGivesAnEmptyMap) {
  const auto counters = reader.read();
  ASSERT_TRUE(counters);
  EXPECT_TRUE(counters->empty());
}

TEST_F(BsdConnectionMetricsReaderTest, EveryFailureOfTheAddressListIsFailedGetIf) {
  kernel.addLink("en0");
  for (const auto error : {NetworkKernelError::refused, NetworkKernelError::malformed,
                           NetworkKernelError::interrupted, NetworkKernelError::failed}) {
    kernel.fail(Table::addressEntries, error);
    const auto counters = reader.read();
    ASSERT_FALSE(counters);
    EXPECT_EQ(counters.error(), ConnectionMetricsError(ConnectionMetricsReaderError::failedGetIf));
  }
}

TEST_F(BsdConnectionMetricsReaderTest, EveryReadLooksAfresh) {
  kernel.addLink("en0");
  EXPECT_EQ(reader.read()->find("en0")->sentBytes, 0U);
  kernel.setCounters("en0", {.sentBytes = 7});
  EXPECT_EQ(reader.read()->find("en0")->sentBytes, 7U);
  EXPECT_EQ(kernel.fetchCount(Table::addressEntries), 2U);
}

TEST_F(BsdConnectionMetricsReaderTest, NamesComeInAscendingOrder) {
  for (const char* name : {"lo", "en10", "en1", "bridge0"}) kernel.addLink(name);
  const auto counters = reader.read();
  std::vector<std::string> names;
  for (std::size_t i = 0; i < counters->size(); ++i) names.push_back(counters->name(i));
  EXPECT_EQ(names, (std::vector<std::string>{"bridge0", "en1", "en10", "lo"}));
}

using BsdConnectionMetricsReaderDeathTest = BsdConnectionMetricsReaderTest;

TEST_F(BsdConnectionMetricsReaderDeathTest, EntryWithoutNameStopsTheProgram) {
  kernel.setAddressEntries({{.name = {}, .address = IPv4Bytes{}, .netmask = {}, .statistics = {}}});
  EXPECT_DEATH((void)reader.read(), "an entry without a name");
}

TEST_F(BsdConnectionMetricsReaderDeathTest, EntryWithoutAddressStopsTheProgram) {
  kernel.setAddressEntries({{.name = "en0", .address = {}, .netmask = {}, .statistics = {}}});
  EXPECT_DEATH((void)reader.read(), "an entry without an address");
}

}  // namespace
}  // namespace lanternfold
