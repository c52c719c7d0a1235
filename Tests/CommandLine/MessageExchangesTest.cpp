// Many exchanges of messages over real sockets, one after the other and at once.
#include <chrono>
#include <future>
#include <map>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <asio/co_spawn.hpp>
#include <asio/io_context.hpp>
#include <asio/use_future.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NetBase/NetworkMessageSender.h"
#include "PlatformLinux/Connection/SocketConnection.h"
#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/EventLoop.h"
#include "Tests/CommandLine/HeldResources.h"
#include "Tests/PlatformLinux/LoopbackPeer.h"

namespace lanternfold {
namespace {

const std::string farewell = "no more";
constexpr double timeoutSeconds = 3;

/// Sends every datagram back, until one says farewell.
class EchoingDatagrams {
 public:
  EchoingDatagrams()
      : thread_([this] {
          for (std::string datagram = peer_.receive(); datagram != farewell;
               datagram = peer_.receive()) {
            peer_.answer(datagram);
          }
        }) {}
  ~EchoingDatagrams() {
    const LoopbackSocket goodbye(SOCK_DGRAM);
    const sockaddr_in to = loopback(peer_.port());
    EXPECT_GT(::sendto(goodbye.get(), farewell.data(), farewell.size(), 0,
                       reinterpret_cast<const sockaddr*>(&to), sizeof(to)),
              0);
    thread_.join();
  }
  EchoingDatagrams(const EchoingDatagrams&) = delete;
  EchoingDatagrams& operator=(const EchoingDatagrams&) = delete;

  [[nodiscard]] std::uint16_t port() const { return peer_.port(); }

 private:
  LoopbackDatagrams peer_;
  std::thread thread_;
};

class MessageExchangesTest : public testing::Test {
 protected:
  asio::awaitable<MessageResult> exchange(Transport transport, std::uint16_t port,
                                          std::string message) {
    NetworkMessageSender sender(std::move(message),
                                connections_.connection({transport, "127.0.0.1", port}),
                                timeoutSeconds, queue_, timerQueue_);
    co_return co_await sender.start();
  }

  /// How many of `count` exchanges, one after the other, gave back what was sent.
  asio::awaitable<int> exchangeDatagrams(std::uint16_t port, int count) {
    int echoed = 0;
    for (int number = 0; number < count; ++number) {
      const std::string message = "message " + std::to_string(number);
      const MessageResult result = co_await exchange(Transport::udp, port, message);
      if (result && result->data == message) ++echoed;
    }
    co_return echoed;
  }

  int waitForDatagrams(std::uint16_t port, int count) {
    return asio::co_spawn(loop_.context(), exchangeDatagrams(port, count), asio::use_future).get();
  }

  EventLoop loop_;
  AsioDispatch dispatch_{loop_};
  SocketConnectionFactory connections_{loop_};
  /// In place of the main queue, which nobody runs here.
  DispatchQueue& timerQueue_ = dispatch_.serialQueue("timers", QualityOfService::userInitiated);
  DispatchQueue& queue_ = dispatch_.serialQueue("exchanges", QualityOfService::userInitiated);
};

/// Once the time limits of all exchanges have passed: their queue forgets them no sooner.
HeldResources heldAfterTheLimits() {
  std::this_thread::sleep_for(std::chrono::duration<double>(timeoutSeconds + 0.2));
  return heldResources();
}

TEST_F(MessageExchangesTest, TenThousandInARowLeaveNothingBehind) {
  const EchoingDatagrams peer;
  EXPECT_EQ(waitForDatagrams(peer.port(), 1000), 1000);
  const HeldResources early = heldAfterTheLimits();
  EXPECT_EQ(waitForDatagrams(peer.port(), 9000), 9000);
  const HeldResources late = heldAfterTheLimits();
  EXPECT_LE(late.descriptors, early.descriptors);
  EXPECT_LE(late.threads, early.threads);
  EXPECT_LE(late.allocations.blocks, early.allocations.blocks + 16);
}

TEST_F(MessageExchangesTest, HaveOneOutcomeWhateverRaces) {
  constexpr unsigned count = 2000;
  const EchoingDatagrams peer;
  std::mt19937 random(8);
  std::map<std::string, int> outcomes;
  for (unsigned number = 0; number < count; ++number) {
    const double limit = static_cast<double>(random() % 400) * 1e-6;
    auto sender = std::make_unique<NetworkMessageSender>(
        "question", connections_.connection({Transport::udp, "127.0.0.1", peer.port()}), limit,
        queue_, timerQueue_);
    auto outcome = asio::co_spawn(loop_.context(), sender->start(), asio::use_future);
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 300));
    if (random() % 2 == 0) {
      asio::co_spawn(loop_.context(), sender->cancel(), asio::use_future).get();
    }
    sender.reset();
    const MessageResult result = outcome.get();
    ++outcomes[result ? result->data : result.error().message()];
  }
  const std::vector<std::string> possible{"question",
                                          make_error_code(MessageSenderError::timeout).message(),
                                          make_error_code(MessageSenderError::cancelled).message()};
  for (const auto& [outcome, times] : outcomes) EXPECT_THAT(possible, testing::Contains(outcome));
}

TEST_F(MessageExchangesTest, FiveHundredAtOnceComplete) {
  constexpr int count = 500;
  LoopbackListener peer;
  std::vector<std::future<MessageResult>> outcomes;
  for (int number = 0; number < count; ++number) {
    outcomes.push_back(asio::co_spawn(
        loop_.context(), exchange(Transport::tcp, peer.port(), "question"), asio::use_future));
  }
  for (int number = 0; number < count; ++number) {
    peer.accept();
    EXPECT_EQ(peer.receive(8), "question");
    peer.send("answer");
    peer.close();
  }
  for (auto& outcome : outcomes) {
    const MessageResult result = outcome.get();
    ASSERT_TRUE(result) << result.error().message();
    EXPECT_EQ(result->data, "answer");
  }
}

}  // namespace
}  // namespace lanternfold
