// The kernel's tables when the kernel answers badly, or not to the point.
#include <cerrno>

#include <gtest/gtest.h>

#include "NetBase/LiteralInterfaceNaming.h"
#include "NetBase/SNUtils.h"
#include "PlatformLinux/System/LinuxNetworkKernelReading.h"
#include "Tests/PlatformLinux/ScriptedNetlink.h"
#include "Tests/Support/FakeResolverConfiguration.h"
#include "Tests/Support/RecordingDiagnosticLog.h"

namespace lanternfold::test {
namespace {

/// The production reading over a scripted kernel.
class ScriptedKernel final : public NetworkKernel {
 public:
  [[nodiscard]] std::unique_ptr<NetworkKernelReading> beginReading() const override {
    return std::make_unique<LinuxNetworkKernelReading>(sockets_, sizes_);
  }
  [[nodiscard]] std::optional<std::chrono::system_clock::time_point> bootTime() const override {
    return std::nullopt;
  }

  ScriptedNetlink netlink;

 private:
  std::shared_ptr<NetlinkSocketPool> sockets_ =
      std::make_shared<NetlinkSocketPool>(netlink.opener());
  std::shared_ptr<LinuxNetworkKernelReading::TableSizes> sizes_ =
      std::make_shared<LinuxNetworkKernelReading::TableSizes>();
};

Bytes half(Bytes bytes) {
  bytes.resize(bytes.size() / 2);
  return bytes;
}

struct BadTable {
  const char* name;
  ScriptedAnswer answer;
  NetworkKernelError error;
};

class BadLinkTable : public testing::TestWithParam<BadTable> {};

INSTANTIATE_TEST_SUITE_P(
    Answers, BadLinkTable,
    testing::Values(
        BadTable{"HalfAMessage", {{half(linkMessage(1, "en0"))}}, NetworkKernelError::malformed},
        BadTable{"LengthZero",
                 {{joined({linkMessage(1, "en0"), Bytes(16)})}},
                 NetworkKernelError::malformed},
        BadTable{"Refused", {{errorMessage(EPERM)}}, NetworkKernelError::refused},
        BadTable{"Silence", {{linkMessage(1, "en0")}}, NetworkKernelError::failed}),
    [](const auto& parameter) { return parameter.param.name; });

TEST_P(BadLinkTable, FailsTheTablesThatStandOnIt) {
  ScriptedKernel kernel;
  kernel.netlink.answer(GetParam().answer);
  const auto reading = kernel.beginReading();
  EXPECT_EQ(reading->linkRecords(), std::unexpected(GetParam().error));
  EXPECT_EQ(reading->addressEntries(), std::unexpected(GetParam().error));
  EXPECT_EQ(reading->interfaceName(1), std::nullopt);
}

TEST_P(BadLinkTable, IsLeftOutByWhoeverWalksTheInterfaces) {
  ScriptedKernel kernel;
  kernel.netlink.answer(GetParam().answer);
  const FakeResolverConfiguration resolver;
  const LiteralInterfaceNaming naming;
  RecordingDiagnosticLog log;
  const SNUtils snUtils(kernel, resolver, naming, log);
  EXPECT_TRUE(snUtils.inetInterfacesWithPrefix(std::nullopt, std::nullopt).empty());
  EXPECT_TRUE(snUtils.linkInterfacesMetrics().empty());
  EXPECT_EQ(snUtils.gatewayForAddress({}, {}, "en0"), std::nullopt);
}

std::string names(const std::vector<LinkRecord>& links) {
  std::string text;
  for (const LinkRecord& link : links) text += (text.empty() ? "" : " ") + link.name;
  return text;
}

TEST(LinuxNetworkKernelReading, ALinkThatStaysIsThereInATableThatNeverRests) {
  // The hash order of older kernels; each try passes over another link.
  ScriptedKernel kernel;
  const auto interrupted = [](const Bytes& one, const Bytes& other) {
    return ScriptedAnswer{{one}, {other}, {doneMessage(NLM_F_DUMP_INTR)}};
  };
  for (int round = 0; round < 4; ++round) {
    kernel.netlink.answer(interrupted(linkMessage(9, "en9"), linkMessage(1, "en1")));
    kernel.netlink.answer(interrupted(linkMessage(5, "en5"), linkMessage(1, "en1")));
  }
  const auto reading = kernel.beginReading();
  EXPECT_EQ(names(reading->linkRecords().value()), "en9 en5 en1");
  EXPECT_EQ(kernel.netlink.requestCount(), 8U);
  EXPECT_EQ(reading->interfaceName(9), "en9");
}

TEST(LinuxNetworkKernelReading, ATableThatNeverRestsInAscendingOrderIsTheLastTry) {
  ScriptedKernel kernel;
  kernel.netlink.answer({{linkMessage(3, "went")}, {doneMessage(NLM_F_DUMP_INTR)}});
  kernel.netlink.answer(
      {{linkMessage(1, "en1")}, {linkMessage(2, "en2")}, {doneMessage(NLM_F_DUMP_INTR)}});
  EXPECT_EQ(names(kernel.beginReading()->linkRecords().value()), "en1 en2");
}

TEST(LinuxNetworkKernelReading, ARoutingTableThatTheKernelDoesNotKnowIsEmpty) {
  ScriptedKernel kernel;
  kernel.netlink.answer({{errorMessage(ENOENT)}});
  EXPECT_EQ(kernel.beginReading()->routes(RouteFamily::ipv4),
            (std::expected<std::vector<RouteRecord>, NetworkKernelError>()));
}

TEST(LinuxNetworkKernelReading, ALinkWithANameOfSixteenBytesIsLeftOut) {
  ScriptedKernel kernel;
  kernel.netlink.answer(
      {{linkMessage(1, "sixteen-bytes-ok")}, {linkMessage(2, "en2")}, {doneMessage()}});
  EXPECT_EQ(names(kernel.beginReading()->linkRecords().value()), "en2");
}

}  // namespace
}  // namespace lanternfold::test
