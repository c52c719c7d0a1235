// What sockets add to the connection's seam: datagrams, long and late replies, and the ways in
// which a peer fails.
#include <chrono>
#include <thread>

#include <gtest/gtest.h>

#include "PlatformLinux/Connection/MessageSocket.h"
#include "PlatformLinux/Connection/SocketConnection.h"
#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/EventLoop.h"
#include "Tests/PlatformLinux/LoopbackPeer.h"
#include "Tests/PlatformLinux/NetworkNamespace.h"
#include "Tests/PlatformLinux/PrivateEtc.h"

namespace lanternfold {
namespace {

using enum ConnectionState;
using namespace std::chrono_literals;
using Message = std::expected<std::optional<std::string>, std::error_code>;

constexpr std::size_t largestIPv4Datagram = 65'507;

class SocketConnectionTest : public testing::Test {
 protected:
  void start(Transport transport, std::uint16_t port, const std::string& host = "127.0.0.1") {
    state_ = setup;  // what a former one told is over
    connection_ = factory_.connection({transport, host, port});
    connection_->setStateHandler([this](ConnectionState state, std::error_code error) {
      state_ = state;
      error_ = error;
    });
    connection_->receiveMessage([this](Message message) { message_ = std::move(message); });
    connection_->start(dispatch_.mainQueue());
  }
  void startUntilReady(Transport transport, std::uint16_t port,
                       const std::string& host = "127.0.0.1") {
    start(transport, port, host);
    EXPECT_TRUE(runUntil([this] { return state_ == ready; })) << error_.message();
  }
  bool runUntil(const std::function<bool()>& done) {
    const auto deadline =
        std::chrono::steady_clock::now() + std::chrono::milliseconds(peerPatience);
    while (!done()) {
      if (std::chrono::steady_clock::now() > deadline) return false;
      (void)dispatch_.runMainUntil(std::chrono::steady_clock::now() + 2ms);
    }
    return true;
  }
  bool runUntilMessage() {
    return runUntil([this] { return message_.has_value(); });
  }

  EventLoop loop_;
  AsioDispatch dispatch_{loop_};
  SocketConnectionFactory factory_{loop_};
  std::shared_ptr<Connection> connection_;
  ConnectionState state_ = setup;
  std::error_code error_;
  std::optional<Message> message_;
};

TEST_F(SocketConnectionTest, ExchangesDatagrams) {
  LoopbackDatagrams peer;
  startUntilReady(Transport::udp, peer.port());
  EXPECT_EQ(connection_->remoteEndpoint(), "127.0.0.1:" + std::to_string(peer.port()));
  connection_->send("question");
  EXPECT_EQ(peer.receive(), "question");
  peer.answer("answer");
  peer.answer("another");
  ASSERT_TRUE(runUntilMessage());
  EXPECT_EQ(*message_, Message("answer"));
}

TEST_F(SocketConnectionTest, ExchangesTheLargestDatagrams) {
  LoopbackDatagrams peer;
  startUntilReady(Transport::udp, peer.port());
  const std::string large(largestIPv4Datagram, 'x');
  connection_->send(large);
  EXPECT_EQ(peer.receive(), large);
  peer.answer(large);
  ASSERT_TRUE(runUntilMessage());
  EXPECT_EQ(*message_, Message(large));
}

TEST_F(SocketConnectionTest, FailsForADatagramThatIsTooLarge) {
  LoopbackDatagrams peer;
  startUntilReady(Transport::udp, peer.port());
  connection_->send(std::string(largestIPv4Datagram + 1, 'x'));
  EXPECT_TRUE(runUntil([this] { return state_ == failed; }));
  EXPECT_EQ(error_, std::errc::message_size);
}

TEST_F(SocketConnectionTest, TakesAnEmptyDatagramForAMessageWithoutData) {
  LoopbackDatagrams peer;
  startUntilReady(Transport::udp, peer.port());
  connection_->send("");
  EXPECT_EQ(peer.receive(), "");
  peer.answer("");
  ASSERT_TRUE(runUntilMessage());
  EXPECT_EQ(*message_, Message(std::nullopt));
}

TEST_F(SocketConnectionTest, TellsWhenNobodyTakesItsDatagrams) {
  startUntilReady(Transport::udp, freePort(SOCK_DGRAM));
  connection_->send("question");
  ASSERT_TRUE(runUntilMessage());
  EXPECT_EQ(message_->error(), std::errc::connection_refused);
}

TEST_F(SocketConnectionTest, PutsTheSegmentsOfAReplyTogether) {
  LoopbackListener peer;
  start(Transport::tcp, peer.port());
  peer.accept();
  std::string expected;
  for (int piece = 0; piece < 20; ++piece) {
    const std::string part = "segment " + std::to_string(piece) + "\n";
    peer.send(part);
    expected += part;
    std::this_thread::sleep_for(2ms);
  }
  peer.endOutput();
  ASSERT_TRUE(runUntilMessage());
  EXPECT_EQ(*message_, Message(expected));
}

TEST_F(SocketConnectionTest, RefusesAReplyThatDoesNotEnd) {
  LoopbackListener peer;
  start(Transport::tcp, peer.port());
  peer.accept();
  std::thread sender([&] { peer.send(std::string(largestReplyBytes, 'x')); });
  sender.join();
  peer.send("and more");
  ASSERT_TRUE(runUntilMessage());
  EXPECT_EQ(message_->error(), std::errc::message_size);
}

TEST_F(SocketConnectionTest, TellsOfAPeerThatResetsTheConnection) {
  LoopbackListener peer;
  startUntilReady(Transport::tcp, peer.port());
  peer.accept();
  peer.reset();
  ASSERT_TRUE(runUntilMessage());
  EXPECT_EQ(message_->error(), std::errc::connection_reset);
}

// What came before it counts for nothing: nobody knows how much is missing.
TEST_F(SocketConnectionTest, TakesNoPartOfAReplyOfAPeerThatResets) {
  LoopbackListener peer;
  startUntilReady(Transport::tcp, peer.port());
  peer.accept();
  peer.send("half of a re");
  std::this_thread::sleep_for(20ms);  // it has been read
  EXPECT_EQ(message_, std::nullopt);
  peer.reset();
  ASSERT_TRUE(runUntilMessage());
  EXPECT_EQ(message_->error(), std::errc::connection_reset);
}

// It answers before it has read everything, and then closes: what it said counts.
TEST_F(SocketConnectionTest, TakesTheReplyOfAPeerThatDoesNotReadAll) {
  LoopbackListener peer;
  startUntilReady(Transport::tcp, peer.port());
  peer.accept();
  connection_->send(std::string(std::size_t{8} * 1024 * 1024, 'x'));
  EXPECT_EQ(peer.receive(1).substr(0, 1), "x");
  peer.send("enough");
  peer.endOutput();
  ASSERT_TRUE(runUntilMessage());
  EXPECT_EQ(*message_, Message("enough"));
}

TEST_F(SocketConnectionTest, WaitsForASilentPeerUntilItIsCancelled) {
  LoopbackListener peer;
  startUntilReady(Transport::tcp, peer.port());
  peer.accept();
  connection_->send("question");
  EXPECT_EQ(peer.receive(8), "question");
  connection_->cancel();
  EXPECT_TRUE(runUntil([this] { return state_ == cancelled; }));
  EXPECT_EQ(message_, std::nullopt);
  EXPECT_EQ(peer.receive(1), "");  // the connection is closed
}

TEST_F(SocketConnectionTest, FindsAHostByItsName) {
  LoopbackListener peer;
  startUntilReady(Transport::tcp, peer.port(), "localhost");
}

TEST_F(SocketConnectionTest, FailsForWhatIsNoHostsName) {
  for (const std::string& host :
       {std::string(), std::string("local\0host", 10), std::string("127.0.0.1\0x", 11),
        std::string("::1%junk"), std::string("\xFF\xFE"), std::string("..")}) {
    start(Transport::tcp, 7, host);
    EXPECT_TRUE(runUntil([this] { return state_ == failed; })) << host;
    EXPECT_TRUE(error_) << host;
  }
}

TEST_F(SocketConnectionTest, WritesIPv6PeersInBrackets) {
  startUntilReady(Transport::udp, 7, "::1");
  EXPECT_EQ(connection_->remoteEndpoint(), "[::1]:7");
}

/// Entered before the threads of the connections are started.
struct EnteredNamespace {
  std::unique_ptr<NetworkNamespace> entered = NetworkNamespace::enter();
};

class SocketConnectionInNamespace : private EnteredNamespace, public SocketConnectionTest {
 protected:
  void SetUp() override {
    REQUIRE_ROOT("to make a network namespace");
    ASSERT_NE(entered, nullptr) << "the system refuses to make a network namespace";
    ASSERT_TRUE(NetworkNamespace::run("ip link set lo up"));
    ASSERT_TRUE(PrivateEtc::mount());
    PrivateEtc::write("nsswitch.conf", "hosts: files\n");
    PrivateEtc::write("host.conf", "multi on\n");
    PrivateEtc::write("hosts",
                      "::1 both.example\n127.0.0.1 both.example\n"
                      "::1 far.example\n192.0.2.9 far.example\n");
  }
};

TEST_F(SocketConnectionInNamespace, TriesTheNextAddressWhenTheFirstRefuses) {
  startUntilReady(Transport::udp, 7, "both.example");
  EXPECT_EQ(connection_->remoteEndpoint(), "[::1]:7");  // the first, in the system's order
  LoopbackListener peer;                                // listens at the second alone
  startUntilReady(Transport::tcp, peer.port(), "both.example");
  EXPECT_EQ(connection_->remoteEndpoint(), "127.0.0.1:" + std::to_string(peer.port()));
  peer.accept();
  connection_->send("question");
  EXPECT_EQ(peer.receive(8), "question");
  peer.send("answer");
  peer.endOutput();
  ASSERT_TRUE(runUntilMessage());
  EXPECT_EQ(*message_, Message("answer"));
}

TEST_F(SocketConnectionInNamespace, FailsWithTheErrorOfTheLastAddress) {
  start(Transport::tcp, 7, "both.example");
  ASSERT_TRUE(runUntil([this] { return state_ == failed; }));
  EXPECT_EQ(error_, std::errc::connection_refused);
  start(Transport::tcp, 7, "far.example");  // to the second there is no way
  ASSERT_TRUE(runUntil([this] { return state_ == failed; }));
  EXPECT_EQ(error_, std::errc::network_unreachable);
}

}  // namespace
}  // namespace lanternfold
