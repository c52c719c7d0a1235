// What both sides of the stream's seam promise, and what the Linux side adds.
#include <fcntl.h>
#include <vector>

#include "Tests/PlatformLinux/Contracts/ByteStreamWorlds.h"

namespace lanternfold {
namespace {

using End = ByteStream::End;

template <typename World>
class ByteStreamContract : public testing::Test {
 protected:
  void start() {
    world_.stream().start({.received = [this](std::string_view bytes) { received_ += bytes; },
                           .ended = [this](End end) { ends_.push_back(end); }});
  }
  bool runUntilReceived(std::size_t size) {
    return world_.runUntil([this, size] { return received_.size() >= size; });
  }
  bool runUntilEnded(std::size_t count) {
    return world_.runUntil([this, count] { return ends_.size() >= count; });
  }

  std::string received_;
  std::vector<End> ends_;
  World world_;
};

class WorldNames {
 public:
  template <typename World>
  static std::string GetName(int) {
    return std::is_same_v<World, LinuxStreamWorld> ? "Linux" : "Fake";
  }
};

using Worlds = testing::Types<LinuxStreamWorld, FakeStreamWorld>;
TYPED_TEST_SUITE(ByteStreamContract, Worlds, WorldNames);

TYPED_TEST(ByteStreamContract, BytesArriveInTheirOrder) {
  this->start();
  this->world_.deliver("one");
  this->world_.deliver(std::string("\0two", 4));
  EXPECT_TRUE(this->runUntilReceived(7));
  EXPECT_EQ(this->received_, std::string("one\0two", 7));
}

TYPED_TEST(ByteStreamContract, WhatWasSentBeforeTheStartIsReceived) {
  this->world_.deliver("early");
  this->start();
  EXPECT_TRUE(this->runUntilReceived(5));
}

TYPED_TEST(ByteStreamContract, WhatIsSentReachesThePeerInItsOrder) {
  this->start();
  this->world_.stream().send("first ");
  this->world_.stream().send("second");
  std::string taken;
  EXPECT_TRUE(this->world_.runUntil([&] {
    taken += this->world_.take();
    return taken.size() >= 12;
  }));
  EXPECT_EQ(taken, "first second");
}

TYPED_TEST(ByteStreamContract, FlushingIsDoneOnceLater) {
  this->start();
  int flushes = 0;
  this->world_.stream().send("bytes");
  this->world_.stream().flush([&] { ++flushes; });
  EXPECT_EQ(flushes, 0);
  EXPECT_TRUE(this->world_.runUntil([&] { return flushes > 0; }));
  this->world_.stream().flush([&] { ++flushes; });
  EXPECT_TRUE(this->world_.runUntil([&] { return flushes > 1; }));
  EXPECT_EQ(flushes, 2);
}

TYPED_TEST(ByteStreamContract, APeerThatSendsNothingMoreStillTakesAnswers) {
  this->start();
  this->world_.deliver("last");
  this->world_.endInput();
  ASSERT_TRUE(this->runUntilEnded(1));
  EXPECT_EQ(this->received_, "last");
  EXPECT_EQ(this->ends_, std::vector{End::noMoreInput});
  this->world_.stream().send("answer");
  std::string taken;
  EXPECT_TRUE(this->world_.runUntil([&] {
    taken += this->world_.take();
    return taken == "answer";
  }));
}

TYPED_TEST(ByteStreamContract, APeerThatClosesIsGone) {
  this->start();
  this->world_.close();
  ASSERT_TRUE(this->runUntilEnded(1));
  EXPECT_EQ(this->ends_, std::vector{End::gone});
  this->world_.stream().send("nobody");
  bool isFlushed = false;
  this->world_.stream().flush([&] { isFlushed = true; });
  EXPECT_TRUE(this->world_.runUntil([&] { return isFlushed; }));
}

TYPED_TEST(ByteStreamContract, NothingComesAfterItWasLetGo) {
  this->start();
  this->world_.deliver("unheard");
  this->world_.letGo();
  EXPECT_FALSE(this->received_.size() > 7);
}

class SocketByteStreamTest : public ByteStreamContract<LinuxStreamWorld> {
 protected:
  static std::error_code faultOf(int descriptor) {
    EventLoop loop;
    AsioDispatch dispatch(loop);
    const auto stream = SocketByteStream::adopt(descriptor, loop, dispatch.mainQueue());
    return stream ? std::error_code() : stream.error();
  }
};

TEST_F(SocketByteStreamTest, MuchMoreThanASocketHoldsReachesThePeer) {
  start();
  const std::string much(std::size_t{8} * 1024 * 1024, 'm');
  world_.stream().send(much);
  std::size_t taken = 0;
  EXPECT_TRUE(world_.runUntil([&] {
    taken += world_.take().size();
    return taken == much.size();
  }));
}

TEST_F(SocketByteStreamTest, NothingMoreIsReadFromAPeerThatDoesNotRead) {
  start();
  world_.stream().send(std::string(std::size_t{4} * 1024 * 1024, 'm'));
  bool isAnotherDone = false;
  world_.stream().flush([&] { isAnotherDone = true; });
  world_.deliver("a");
  EXPECT_TRUE(runUntilReceived(1)) << "what was being read already";
  world_.deliver("b");
  (void)world_.runUntil([&, tries = 0]() mutable { return ++tries > 50; });
  EXPECT_EQ(received_, "a");
  EXPECT_FALSE(isAnotherDone);
  EXPECT_TRUE(world_.runUntil([&] {
    (void)world_.take();
    return received_ == "ab";
  }));
}

TEST_F(SocketByteStreamTest, APeerThatGoesWhileItIsSentToIsGone) {
  start();
  world_.stream().send(std::string(std::size_t{4} * 1024 * 1024, 'm'));
  world_.close();
  ASSERT_TRUE(runUntilEnded(1));
  EXPECT_EQ(ends_.back(), End::gone);
}

TEST_F(SocketByteStreamTest, WhatAPeerSaidBeforeItWentIsReceivedThoughItCannotBeSentTo) {
  const std::string said(150'000, 's');
  world_.deliver(said);
  world_.close();
  std::optional<std::size_t> receivedAtEnd;
  world_.stream().start({.received = [this](std::string_view bytes) { received_ += bytes; },
                         .ended = [&](End) { receivedAtEnd = received_.size(); }});
  world_.stream().send("an answer that nobody takes");
  ASSERT_TRUE(world_.runUntil([&] { return receivedAtEnd.has_value(); }));
  EXPECT_EQ(receivedAtEnd, said.size());
}

TEST_F(SocketByteStreamTest, OnlyAConnectedStreamSocketIsAdopted) {
  EXPECT_EQ(faultOf(-1), std::errc::bad_file_descriptor);
  EXPECT_EQ(faultOf(987), std::errc::bad_file_descriptor);
  const FileDescriptor file(::open("/dev/null", O_RDWR | O_CLOEXEC));
  EXPECT_EQ(faultOf(file.get()), std::errc::not_a_socket);
  const FileDescriptor datagrams(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  EXPECT_EQ(faultOf(datagrams.get()), std::errc::wrong_protocol_type);
  const FileDescriptor unconnected(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  EXPECT_EQ(faultOf(unconnected.get()), std::errc::not_connected);
}

TEST_F(SocketByteStreamTest, NoProgramThatIsStartedLaterInheritsTheSocket) {
  std::array<int, 2> ends{};
  ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()), 0);
  const FileDescriptor peer(ends[0]);
  EventLoop loop;
  AsioDispatch dispatch(loop);
  const auto stream = SocketByteStream::adopt(ends[1], loop, dispatch.mainQueue());
  ASSERT_TRUE(stream);
  EXPECT_NE(::fcntl(ends[1], F_GETFD) & FD_CLOEXEC, 0);
}

}  // namespace
}  // namespace lanternfold
