#include <cerrno>
#include <cstring>

#include <gtest/gtest.h>
#include <linux/rtnetlink.h>

#include "PlatformLinux/Netlink/LinkMessage.h"
#include "PlatformLinux/System/NetlinkSocket.h"
#include "Tests/PlatformLinux/ScriptedNetlink.h"

namespace lanternfold::test {
namespace {

/// One socket over a scripted kernel; what the handler gets is kept as text.
class NetlinkSocketTest : public testing::Test {
 protected:
  /// "begin en0 en1 done", with the name of the error instead of "done".
  std::string dump() {
    std::string text;
    const auto result =
        socket.dump(linkDumpRequest(), {.begin = [&text] { text += "begin "; },
                                        .message =
                                            [&text](const NetlinkMessage& message) {
                                              const auto link = decodeLinkMessage(message);
                                              text += (link ? link->name : std::string("?")) + " ";
                                            }});
    return text + (result ? "done" : nameOf(result.error()));
  }

  static std::string nameOf(NetworkKernelError error) {
    switch (error) {
      case NetworkKernelError::refused:
        return "refused";
      case NetworkKernelError::malformed:
        return "malformed";
      case NetworkKernelError::interrupted:
        return "interrupted";
      case NetworkKernelError::failed:
        return "failed";
    }
    return "?";
  }

  ScriptedNetlink kernel;
  NetlinkSocket socket = NetlinkSocket::open(kernel.opener()).value();
};

const ScriptedAnswer quiet = {{linkMessage(1, "en0")}, {doneMessage()}};
const ScriptedAnswer disturbed = {
    {linkMessage(1, "en0")}, {linkMessage(2, "en1", NLM_F_DUMP_INTR)}, {doneMessage()}};

Bytes withSequence(Bytes bytes, std::uint32_t sequence) {
  std::memcpy(bytes.data() + offsetof(nlmsghdr, nlmsg_seq), &sequence, sizeof(sequence));
  return bytes;
}

Bytes withPort(Bytes bytes, std::uint32_t port) {
  std::memcpy(bytes.data() + offsetof(nlmsghdr, nlmsg_pid), &port, sizeof(port));
  return bytes;
}

TEST_F(NetlinkSocketTest, HandsOverTheMessagesOfEveryDatagram) {
  kernel.answer({{joined({linkMessage(1, "en0"), linkMessage(2, "en1")})},
                 {joined({linkMessage(3, "en2"), doneMessage()})}});
  EXPECT_EQ(dump(), "begin en0 en1 en2 done");
  EXPECT_EQ(kernel.openedCount(), 1U);
}

TEST_F(NetlinkSocketTest, TriesAgainWhenTheTableChangedWhileItWasRead) {
  kernel.answer(disturbed);
  kernel.answer(quiet);
  EXPECT_EQ(dump(), "begin en0 en1 begin en0 done");
}

TEST_F(NetlinkSocketTest, AnInterruptionThatOnlyTheEndTellsOfCounts) {
  kernel.answer({{linkMessage(1, "en0")}, {doneMessage(NLM_F_DUMP_INTR)}});
  kernel.answer(quiet);
  EXPECT_EQ(dump(), "begin en0 begin en0 done");
}

TEST_F(NetlinkSocketTest, GivesUpAfterEightInterruptedTries) {
  kernel.answer(disturbed);
  EXPECT_TRUE(dump().ends_with("begin en0 en1 interrupted"));
  EXPECT_EQ(kernel.requestCount(), 8U);
}

TEST_F(NetlinkSocketTest, GrowsForAMessageThatWasCutAndAsksAgainOverAFreshChannel) {
  kernel.answer({{linkMessage(1, "en0")}, {Bytes(100'000)}, {doneMessage()}});
  kernel.answer({{linkMessage(1, "en0")}, {Bytes(100'000)}, {doneMessage()}});
  kernel.answer(quiet);
  EXPECT_EQ(dump(), "begin en0 begin en0 begin en0 done");
  EXPECT_EQ(kernel.openedCount(), 3U);
}

TEST_F(NetlinkSocketTest, AMessageBeyondEveryMeasureFails) {
  kernel.answer({{Bytes(16 * 1024 * 1024 + 1)}});
  EXPECT_TRUE(dump().ends_with("begin failed"));
  EXPECT_EQ(socket.lastErrorNumber(), EMSGSIZE);
  EXPECT_EQ(kernel.requestCount(), 10U);
}

TEST_F(NetlinkSocketTest, SilenceFailsAndTheNextDumpHasAFreshChannel) {
  kernel.answer({{linkMessage(1, "en0")}});
  kernel.answer(quiet);
  EXPECT_EQ(dump(), "begin en0 failed");
  EXPECT_EQ(socket.lastErrorNumber(), EAGAIN);
  EXPECT_EQ(dump(), "begin en0 done");
  EXPECT_EQ(socket.lastErrorNumber(), 0);
  EXPECT_EQ(kernel.openedCount(), 2U);
}

TEST_F(NetlinkSocketTest, WhatOthersSendIsPassedOver) {
  kernel.answer({{linkMessage(6, "forged"), ReceiveOutcome::foreign},
                 {withPort(linkMessage(7, "other"), 4711)},
                 {withSequence(linkMessage(8, "old"), 999'999)},
                 {withSequence(doneMessage(), 999'999)},
                 {linkMessage(1, "en0")},
                 {doneMessage()}});
  EXPECT_EQ(dump(), "begin en0 done");
}

TEST_F(NetlinkSocketTest, ARefusalOfTheKernelIsRefused) {
  kernel.answer({{errorMessage(EPERM)}});
  EXPECT_EQ(dump(), "begin refused");
  EXPECT_EQ(socket.lastErrorNumber(), EPERM);
}

TEST_F(NetlinkSocketTest, AnyOtherErrorOfTheKernelIsAFailure) {
  kernel.answer({{linkMessage(1, "en0")}, {errorMessage(ENOENT)}});
  EXPECT_EQ(dump(), "begin en0 failed");
  EXPECT_EQ(socket.lastErrorNumber(), ENOENT);
}

TEST_F(NetlinkSocketTest, AnAcknowledgmentEndsASingleAnswer) {
  kernel.answer({{linkMessage(1, "en0")}, {errorMessage(0)}});
  EXPECT_EQ(dump(), "begin en0 done");
}

TEST_F(NetlinkSocketTest, HalfAMessageIsMalformed) {
  Bytes half = linkMessage(1, "en0");
  half.resize(half.size() / 2);
  kernel.answer({{half}, {doneMessage()}});
  kernel.answer(quiet);
  EXPECT_EQ(dump(), "begin malformed");
  EXPECT_EQ(dump(), "begin en0 done") << "the rest of the broken answer went with its channel";
}

TEST_F(NetlinkSocketTest, AMessageOfLengthZeroIsMalformed) {
  kernel.answer({{joined({linkMessage(1, "en0"), Bytes(16)})}, {doneMessage()}});
  EXPECT_EQ(dump(), "begin en0 malformed");
}

TEST_F(NetlinkSocketTest, LostMessagesAreAFailure) {
  kernel.answer({{{}, ReceiveOutcome::overflowed, ENOBUFS}});
  kernel.answer({{message(NLMSG_OVERRUN, {})}});
  EXPECT_EQ(dump(), "begin failed");
  EXPECT_EQ(dump(), "begin failed");
}

TEST_F(NetlinkSocketTest, ARequestThatCannotBeSentIsAFailure) {
  kernel.failSending(ENOMEM);
  EXPECT_EQ(dump(), "begin failed");
  EXPECT_EQ(socket.lastErrorNumber(), ENOMEM);
}

TEST_F(NetlinkSocketTest, AChannelThatDoesNotOpenAgainIsTheError) {
  kernel.answer({{errorMessage(ENOENT)}});
  kernel.refuseChannels();
  EXPECT_EQ(dump(), "begin refused");
  EXPECT_FALSE(NetlinkSocket::open(kernel.opener()));
}

TEST(NetlinkSocketDeathTest, ARequestShorterThanItsHeaderStopsTheProgram) {
  ScriptedNetlink kernel;
  auto socket = NetlinkSocket::open(kernel.opener()).value();
  EXPECT_DEATH(static_cast<void>(socket.dump(NetlinkRequest(4), {})),
               "a netlink request is shorter than its header");
}

}  // namespace
}  // namespace lanternfold::test
