#include <gtest/gtest.h>

#include "PlatformLinux/Netlink/NetlinkMessage.h"
#include "Tests/PlatformLinux/Netlink/NetlinkFrames.h"

namespace lanternfold::test {
namespace {

TEST(NetlinkMessageWalker, AnEmptyDatagramHasNoMessage) {
  EXPECT_FALSE(NetlinkMessageWalker({}).next().value().has_value());
}

TEST(NetlinkMessageWalker, GivesEachMessageInOrderWithItsHeader) {
  const Bytes datagram =
      joined({message(16, {1, 2, 3}), message(17, {4, 5, 6, 7}, NLM_F_DUMP_INTR)});
  NetlinkMessageWalker walker(datagram);

  const auto first = walker.next().value().value();
  EXPECT_EQ(first.type, 16);
  EXPECT_EQ(first.sequence, 7U);
  EXPECT_EQ(first.port, 9U);
  EXPECT_EQ(Bytes(first.payload.begin(), first.payload.end()), (Bytes{1, 2, 3}));
  EXPECT_FALSE(first.dumpWasInterrupted());

  const auto second = walker.next().value().value();
  EXPECT_EQ(second.type, 17);
  EXPECT_TRUE(second.dumpWasInterrupted());
  EXPECT_FALSE(walker.next().value().has_value());
}

TEST(NetlinkMessageWalker, TheLastMessageMayLackItsPadding) {
  Bytes datagram = message(16, {1, 2, 3});
  datagram.pop_back();
  NetlinkMessageWalker walker(datagram);
  EXPECT_EQ(walker.next().value().value().payload.size(), 3U);
  EXPECT_FALSE(walker.next().value().has_value());
}

TEST(NetlinkMessageWalker, HalfAMessageIsTruncatedAtEveryByte) {
  const Bytes whole = message(16, {1, 2, 3, 4});
  for (std::size_t length = 1; length < whole.size(); ++length) {
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
    NetlinkMessageWalker walker(cut);
    EXPECT_EQ(walker.next().error(), (DecodeError{DecodeProblem::truncated, "nlmsghdr"})) << length;
    EXPECT_FALSE(walker.next().value().has_value()) << "an error ends the walk";
  }
}

TEST(NetlinkMessageWalker, AMessageOfLengthZeroEndsTheWalkWithAnError) {
  for (const std::uint32_t claimed : {0U, 1U, 15U}) {
    Bytes datagram = message(16, {1, 2, 3, 4});
    std::memcpy(datagram.data(), &claimed, sizeof(claimed));
    NetlinkMessageWalker walker(datagram);
    EXPECT_EQ(walker.next().error(), (DecodeError{DecodeProblem::badLength, "nlmsghdr"}));
    EXPECT_FALSE(walker.next().value().has_value());
  }
}

TEST(NetlinkMessageWalker, ALengthBeyondTheDatagramIsTruncated) {
  for (const std::uint32_t claimed : {21U, 4096U, 0xFFFFFFFFU}) {
    Bytes datagram = message(16, {1, 2, 3, 4});
    std::memcpy(datagram.data(), &claimed, sizeof(claimed));
    EXPECT_EQ(NetlinkMessageWalker(datagram).next().error().problem, DecodeProblem::truncated);
  }
}

struct ControlCase {
  const char* name;
  int type;
  Bytes payload;
  NetlinkControlAnswer answer;
};

TEST(NetlinkControl, TellsEveryControlMessage) {
  using enum NetlinkControl;
  const ControlCase cases[] = {
      {"data", 16, {}, {none, 0}},
      {"no operation", NLMSG_NOOP, {}, {noOperation, 0}},
      {"overrun", NLMSG_OVERRUN, {}, {overrun, 0}},
      {"done without a code", NLMSG_DONE, {}, {done, 0}},
      {"done", NLMSG_DONE, bytesOf(std::int32_t{0}), {done, 0}},
      {"done with an error", NLMSG_DONE, bytesOf(std::int32_t{-22}), {failure, 22}},
      {"acknowledgment", NLMSG_ERROR, bytesOf(std::int32_t{0}), {acknowledgment, 0}},
      {"refusal", NLMSG_ERROR, bytesOf(std::int32_t{-1}), {failure, 1}},
      {"a positive code", NLMSG_ERROR, bytesOf(std::int32_t{1}), {failure, 5}},
      {"the smallest code", NLMSG_ERROR, bytesOf(INT32_MIN), {failure, 5}},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(decodeControl(payloadMessage(each.type, each.payload)).value(), each.answer)
        << each.name;
  }
}

TEST(NetlinkControl, AnErrorMessageWithoutItsCodeIsTruncated) {
  const Bytes payload{1, 2, 3};
  EXPECT_EQ(decodeControl(payloadMessage(NLMSG_ERROR, payload)).error(),
            (DecodeError{DecodeProblem::truncated, "nlmsgerr"}));
}

}  // namespace
}  // namespace lanternfold::test
