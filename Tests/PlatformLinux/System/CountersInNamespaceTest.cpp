// The counter sources against the real kernel.
#include <atomic>
#include <cstddef>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <nlohmann/json.hpp>

#include "PlatformLinux/System/LinkCounterSource.h"
#include "PlatformLinux/System/LinuxConnectionMetricsReader.h"
#include "PlatformLinux/System/ProcNetDevCounterSource.h"
#include "PlatformLinux/System/StatisticsCounterSource.h"
#include "Tests/PlatformLinux/System/NamespaceTools.h"
#include "Tests/PlatformLinux/System/TapLink.h"

namespace lanternfold::test {
namespace {

ConnectionMetricsMap read(CounterSource& source) {
  auto metrics = source.read();
  EXPECT_TRUE(metrics);
  return metrics ? std::move(*metrics) : ConnectionMetricsMap();
}

/// The same as iproute2 tells it, from its 64-bit statistics.
ConnectionMetricsMap countersOfIproute2() {
  std::vector<ConnectionMetricsMap::Entry> links;
  for (const auto& link : nlohmann::json::parse(ipOutput("-j -s -s link"))) {
    const auto& received = link["stats64"]["rx"];
    const auto& sent = link["stats64"]["tx"];
    links.push_back({link["ifname"].get<std::string>(),
                     {.sentBytes = sent["bytes"],
                      .recvBytes = received["bytes"],
                      .sentError = sent["errors"],
                      .recvError = received["errors"],
                      .sentPacket = sent["packets"],
                      .recvPacket = received["packets"],
                      .collisions = sent["collisions"],
                      .mtu = link["mtu"]}});
  }
  return ConnectionMetricsMap::of(std::move(links));
}

TEST(CountersInNamespace, EverySourceAgreesWithIproute2) {
  inNewNetworkNamespace([] {
    turnOffIPv6();
    TapLink tap("en0");
    ip("link set lo up\nlink set en0 up mtu 1400\nlink add en5 type ifb\n"
       "link add br0 type bridge\nlink add veth0 type veth peer name veth1\n");
    for (int frame = 0; frame < 5; ++frame) tap.write(100);
    StatisticsCounterSource statistics;
    LinkCounterSource links;
    ProcNetDevCounterSource text;
    const auto expected = countersOfIproute2();
    ASSERT_EQ(expected.size(), 6U);
    EXPECT_EQ(read(statistics), expected);
    EXPECT_EQ(read(links), expected);
    EXPECT_EQ(read(text), expected);
    EXPECT_EQ(expected.find("en0")->mtu, 1400U);
  });
}

TEST(CountersInNamespace, ATapGrowsByExactlyWhatIsWritten) {
  inNewNetworkNamespace([] {
    TapLink tap("en0");
    ip("link set en0 up\n");
    LinuxConnectionMetricsReader reader;
    const ConnectionMetrics before = *reader.read().value().find("en0");
    for (int frame = 0; frame < 10; ++frame) tap.write(500);
    const ConnectionMetrics after = *reader.read().value().find("en0");
    EXPECT_EQ(after.recvBytes - before.recvBytes, 10U * 500U);
    EXPECT_EQ(after.recvPacket - before.recvPacket, 10U);
  });
}

TEST(CountersInNamespace, LinksThatComeGoAndAreRenamedAreFollowed) {
  inNewNetworkNamespace([] {
    StatisticsCounterSource source;
    EXPECT_EQ(read(source).size(), 1U);
    ip("link add en0 type ifb\nlink add en1 type ifb\n");
    EXPECT_EQ(read(source), countersOfIproute2());
    ip("link set en0 name wan\nlink set en1 name en0\nlink set en0 mtu 1280\n");
    EXPECT_EQ(read(source), countersOfIproute2());
    ip("link del wan\nlink add en7 type ifb\n");
    EXPECT_EQ(read(source), countersOfIproute2());
  });
}

TEST(CountersInNamespace, LostEventsLeadToAFreshListOfNames) {
  inNewNetworkNamespace([] {
    ip("link add en0 type ifb\n");
    StatisticsCounterSource source;
    EXPECT_EQ(read(source).size(), 2U);
    // Far more events than the socket has room for, and none read meanwhile.
    std::string commands;
    for (int round = 0; round < 6000; ++round) {
      commands += "link set en0 mtu " + std::to_string(1000 + round % 400) + "\n";
    }
    ip(commands + "link set en0 name last mtu 1234\n");
    const auto metrics = read(source);
    ASSERT_NE(metrics.find("last"), nullptr);
    EXPECT_EQ(metrics.find("last")->mtu, 1234U);
    EXPECT_EQ(metrics.find("en0"), nullptr);
  });
}

TEST(CountersInNamespace, AStormOfRenamesAndDeletionsNeverBlanksTheStableLinks) {
  inNewNetworkNamespace([] {
    std::string commands;
    for (int link = 0; link < 200; ++link) {
      commands += "link add stable" + std::to_string(link) + " type ifb\n";
    }
    ip(commands);
    std::string storm;
    for (int round = 0; round < 150; ++round) {
      storm += "link add x type ifb\nlink set x name y\nlink set y name z\nlink del z\n";
    }
    std::atomic<bool> isOver = false;
    std::thread changes([&] {
      ip(storm);
      isOver = true;
    });
    LinuxConnectionMetricsReader reader;
    int readings = 0;
    do {
      const auto metrics = reader.read();
      ASSERT_TRUE(metrics);
      ASSERT_GE(metrics->size(), 201U);
      ASSERT_LE(metrics->size(), 202U);
      ASSERT_NE(metrics->find("stable199"), nullptr);
      ++readings;
    } while (!isOver);
    changes.join();
    EXPECT_GT(readings, 1);
    EXPECT_EQ(reader.read().value(), countersOfIproute2());
  });
}

TEST(CountersInNamespace, ReadingsOnSeveralThreadsDoNotDisturbEachOther) {
  inNewNetworkNamespace([] {
    ip("link add en0 type ifb\n");
    LinuxConnectionMetricsReader reader;
    std::vector<std::thread> threads;
    std::atomic<int> complete = 0;
    for (int thread = 0; thread < 4; ++thread) {
      threads.emplace_back([&] {
        for (int round = 0; round < 200; ++round) {
          const auto metrics = reader.read();
          if (metrics && metrics->size() == 2) ++complete;
        }
      });
    }
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(complete, 800);
  });
}

/// From now on this process gets EPERM for every netlink socket, as in a strict sandbox.
bool refuseNetlink() {
  // The first argument of socket(), the family, is AF_NETLINK.
  sock_filter program[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_socket, 0, 3),
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, AF_NETLINK, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  sock_fprog filter{.len = std::size(program), .filter = program};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

TEST(CountersInNamespace, WhereNetlinkIsRefusedTheTextOfProcServes) {
  // The filter holds for a thread; the test's other threads keep their rights.
  std::thread([] {
    ASSERT_TRUE(refuseNetlink());
    EXPECT_EQ(StatisticsCounterSource().read().error(), NetworkKernelError::refused);
    EXPECT_EQ(LinkCounterSource().read().error(), NetworkKernelError::refused);
    const auto metrics = LinuxConnectionMetricsReader().read();
    ASSERT_TRUE(metrics);
    ASSERT_NE(metrics->find("lo"), nullptr);
    EXPECT_GT(metrics->find("lo")->mtu, 0U);
  }).join();
}

}  // namespace
}  // namespace lanternfold::test
