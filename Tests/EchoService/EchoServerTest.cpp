// The server over real sockets of the loopback, with limits that are soon reached.
#include <arpa/inet.h>
#include <array>
#include <functional>
#include <future>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <thread>
#include <unistd.h>

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <gtest/gtest.h>

#include "EchoService/EchoServer.h"
#include "Tests/Support/SimulatedClock.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

/// What a test waits for at the most, for something that comes at once.
constexpr timeval patience{.tv_sec = 20, .tv_usec = 0};

class Client {
 public:
  explicit Client(const ListenAddress& server) {
    sockaddr_in6 ipv6{.sin6_family = AF_INET6, .sin6_port = htons(server.port)};
    sockaddr_in ipv4{.sin_family = AF_INET, .sin_port = htons(server.port)};
    ipv6.sin6_addr = in6addr_loopback;
    ipv4.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const bool isIpv6 = std::holds_alternative<IPv6Bytes>(server.address);
    socket_ = ::socket(isIpv6 ? AF_INET6 : AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    (void)::setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    (void)::setsockopt(socket_, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
    connected_ =
        (isIpv6 ? ::connect(socket_, reinterpret_cast<sockaddr*>(&ipv6), sizeof ipv6)
                : ::connect(socket_, reinterpret_cast<sockaddr*>(&ipv4), sizeof ipv4)) == 0;
  }
  ~Client() { ::close(socket_); }
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  [[nodiscard]] bool connected() const { return connected_; }

  void send(std::string_view bytes) const { (void)takes(bytes); }
  /// Whether all of it was taken.
  [[nodiscard]] bool takes(std::string_view bytes) const {
    return ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL) ==
           static_cast<ssize_t>(bytes.size());
  }

  void endSending() const { (void)::shutdown(socket_, SHUT_WR); }

  /// Everything until `end` has come; until the server ends the connection when that is empty.
  std::string receive(std::string_view end = {}) {
    std::string bytes;
    std::array<char, 4096> chunk{};
    while (end.empty() || !bytes.ends_with(end)) {
      const ssize_t size = ::recv(socket_, chunk.data(), chunk.size(), 0);
      if (size <= 0) {
        ended_ = size == 0;
        break;
      }
      bytes.append(chunk.data(), static_cast<std::size_t>(size));
    }
    return bytes;
  }
  /// Whether the last `receive` found that the server had ended its side in order.
  [[nodiscard]] bool ended() const { return ended_; }

  /// The server is told that the connection is broken, not that it has ended.
  void resetOnLeaving() const {
    const linger atOnce{.l_onoff = 1, .l_linger = 0};
    (void)::setsockopt(socket_, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
  }

 private:
  int socket_ = -1;
  bool connected_ = false;
  bool ended_ = false;
};

const std::string request = "GET /lanternfold/ip.php HTTP/1.1\r\nHost: a\r\n\r\n";
const std::string lastRequest =
    "GET /lanternfold/ip.php HTTP/1.1\r\nHost: a\r\nConnection: close\r\n\r\n";
const std::string body = R"({"ip":"127.0.0.1"})";

class EchoServerTest : public testing::Test {
 protected:
  ~EchoServerTest() override {
    stop();
    guard_.reset();
    thread_.join();
  }

  void runOnLoop(const std::function<void()>& work) {
    std::promise<void> done;
    asio::post(loop_, [&] {
      work();
      done.set_value();
    });
    done.get_future().wait();
  }

  void start(std::initializer_list<const char*> texts = {"127.0.0.1:0"}) {
    std::vector<ListenAddress> addresses;
    for (const char* text : texts) addresses.push_back(parseListenAddress(text).value());
    runOnLoop([&] {
      server_ = std::make_unique<EchoServer>(
          loop_, EchoConnectionSettings{
                     .responder = EchoResponder({}, {}), .limits = limits_, .clock = clock_});
      listening_ = server_->listen(addresses);
    });
  }
  void stop() {
    runOnLoop([this] { server_.reset(); });
  }
  ListenAddress where(std::size_t index = 0) const { return listening_.value().at(index); }

  EchoLimits limits_;
  std::expected<std::vector<ListenAddress>, EchoListenError> listening_;

 private:
  SimulatedClock clock_;
  asio::io_context loop_;
  asio::executor_work_guard<asio::io_context::executor_type> guard_ = asio::make_work_guard(loop_);
  std::thread thread_{[this] { loop_.run(); }};
  std::unique_ptr<EchoServer> server_;
};

TEST_F(EchoServerTest, AnswersBothFamilies) {
  start({"127.0.0.1:0", "[::1]:0"});
  Client ipv4(where(0));
  Client ipv6(where(1));
  ASSERT_TRUE(ipv4.takes(lastRequest) && ipv6.takes(lastRequest));
  const std::string answer = ipv4.receive();
  EXPECT_TRUE(answer.starts_with("HTTP/1.1 200 OK\r\n")) << answer;
  EXPECT_TRUE(answer.ends_with("Connection: close\r\n\r\n" + body)) << answer;
  EXPECT_TRUE(ipv4.ended());
  EXPECT_TRUE(ipv6.receive().ends_with(R"({"ip":"::1"})"));
}

TEST_F(EchoServerTest, OneFamilyIsOneListener) {
  start({"[::]:0"});
  Client ipv4({.address = IPv4Bytes{127, 0, 0, 1}, .port = where().port});
  EXPECT_FALSE(ipv4.connected());
  Client ipv6(where());
  EXPECT_TRUE(ipv6.connected());
}

TEST_F(EchoServerTest, KeepsAConnectionForSoManyRequests) {
  limits_.requestsPerConnection = 3;
  start();
  Client client(where());
  for (int number = 0; number < 2; ++number) {
    client.send(request);
    EXPECT_THAT(client.receive(body), testing::HasSubstr("Connection: keep-alive\r\n"));
  }
  client.send(request);
  EXPECT_THAT(client.receive(), testing::HasSubstr("Connection: close\r\n"));
  EXPECT_TRUE(client.ended());
}

TEST_F(EchoServerTest, AnswersRequestsThatComeTogetherInTheirOrder) {
  start();
  Client client(where());
  client.send("GET /a HTTP/1.1\r\nHost: a\r\n\r\nHEAD /b HTTP/1.1\r\nHost: a\r\n\r\n" +
              lastRequest);
  const std::string answers = client.receive();
  EXPECT_EQ(answers.find("HTTP/1.1 404"), 0U);
  EXPECT_THAT(answers, testing::HasSubstr("path\"}HTTP/1.1 404 Not Found\r\n"));
  EXPECT_THAT(answers, testing::HasSubstr("\r\n\r\nHTTP/1.1 200 OK\r\n"));
  EXPECT_TRUE(answers.ends_with(body));
}

TEST_F(EchoServerTest, AnswersARequestThatComesByteByByte) {
  start();
  Client client(where());
  for (const char byte : lastRequest) ASSERT_TRUE(client.takes({&byte, 1}));
  EXPECT_TRUE(client.receive().ends_with(body));
}

TEST_F(EchoServerTest, AnswersAClientThatHasEndedItsSide) {
  start();
  Client client(where());
  client.send(request);
  client.endSending();
  EXPECT_TRUE(client.receive().ends_with(body));
  EXPECT_TRUE(client.ended());
}

TEST_F(EchoServerTest, EndsTheConnectionWithTheAnswerToABadRequest) {
  start();
  Client client(where());
  client.send("GARBAGE\r\n\r\n" + request);
  const std::string answer = client.receive();
  EXPECT_TRUE(answer.starts_with("HTTP/1.1 400 Bad Request\r\n")) << answer;
  EXPECT_THAT(answer, testing::Not(testing::HasSubstr("200 OK")));
  EXPECT_TRUE(client.ended());
}

TEST_F(EchoServerTest, TheAnswerToARefusedBodyArrivesWhileTheBodyIsSent) {
  start();
  Client client(where());
  client.send("POST / HTTP/1.1\r\nHost: a\r\nContent-Length: 50000\r\n\r\n" +
              std::string(50'000, 'x'));
  EXPECT_TRUE(client.receive().starts_with("HTTP/1.1 413 Content Too Large\r\n"));
  EXPECT_TRUE(client.ended());
}

TEST_F(EchoServerTest, WhatFollowsAMethodThatItDoesNotHaveIsNoRequest) {
  start();
  Client client(where());
  client.send("PUT /json/ HTTP/1.1\r\nHost: a\r\n\r\n" + request);
  const std::string answer = client.receive();
  EXPECT_TRUE(answer.starts_with("HTTP/1.1 405 Method Not Allowed\r\n")) << answer;
  EXPECT_THAT(answer, testing::Not(testing::HasSubstr("200 OK")));
}

TEST_F(EchoServerTest, GivesASlowHeaderItsTimeAndNoMore) {
  limits_.headerTime = 300ms;
  start();
  Client client(where());
  const auto begin = steady_clock::now();
  client.send("GET / HTTP/1.1\r\n");
  for (int count = 0; count < 5; ++count) {
    std::this_thread::sleep_for(20ms);
    client.send("A: b\r\n");
  }
  EXPECT_TRUE(client.receive().starts_with("HTTP/1.1 408 Request Timeout\r\n"));
  EXPECT_GE(steady_clock::now() - begin, 290ms);
  EXPECT_TRUE(client.ended());
}

TEST_F(EchoServerTest, ClosesAConnectionThatSaysNothing) {
  limits_.headerTime = 100ms;
  start();
  Client client(where());
  EXPECT_EQ(client.receive(), "");
  EXPECT_TRUE(client.ended());
}

TEST_F(EchoServerTest, ClosesAnIdleConnection) {
  limits_.idleTime = 100ms;
  start();
  Client client(where());
  client.send(request);
  EXPECT_TRUE(client.receive(body).ends_with(body));
  EXPECT_EQ(client.receive(), "");
  EXPECT_TRUE(client.ended());
}

TEST_F(EchoServerTest, ASecondHeaderHasATimeOfItsOwn) {
  limits_.idleTime = 20s;
  limits_.headerTime = 200ms;
  start();
  Client client(where());
  client.send(request);
  EXPECT_TRUE(client.receive(body).ends_with(body));
  client.send("GET");
  EXPECT_TRUE(client.receive().starts_with("HTTP/1.1 408 Request Timeout\r\n"));
}

TEST_F(EchoServerTest, DropsAClientThatTakesNoAnswers) {
  limits_.writeTime = 200ms;
  limits_.requestsPerConnection = 10'000'000;
  start();
  Client client(where());
  std::string many;
  for (int count = 0; count < 1000; ++count) many += request;
  const auto begin = steady_clock::now();
  while (client.takes(many) && steady_clock::now() - begin < 30s) {
  }
  EXPECT_LT(steady_clock::now() - begin, 15s) << "it was still being served";
}

TEST_F(EchoServerTest, TellsClientsBeyondItsLimitToComeBack) {
  limits_.connections = 2;
  limits_.refusals = 1;
  start();
  auto first = std::make_unique<Client>(where());
  Client second(where());
  first->send(request);
  EXPECT_TRUE(first->receive(body).ends_with(body));
  Client third(where());
  third.send(request);
  EXPECT_TRUE(third.receive().starts_with("HTTP/1.1 503 Service Unavailable\r\n"));
  // The third one is still being listened to, so no refusal is left for the fourth.
  Client fourth(where());
  EXPECT_EQ(fourth.receive(), "");
  // The first ones are served as before.
  second.send(request);
  EXPECT_TRUE(second.receive(body).ends_with(body));
  first.reset();
  std::string answer;
  for (int tries = 0; tries < 200 && !answer.ends_with(body); ++tries) {
    Client next(where());
    next.send(lastRequest);
    answer = next.receive();
  }
  EXPECT_TRUE(answer.ends_with(body)) << "no room came back";
}

TEST_F(EchoServerTest, GoesOnWhenClientsVanish) {
  limits_.connections = 4;
  start();
  for (int count = 0; count < 200; ++count) {
    Client client(where());
    client.send(std::string_view(request).substr(
        0, static_cast<std::size_t>(count) % (request.size() + 1)));
    if (count % 2 == 0) client.resetOnLeaving();
  }
  std::string answer;
  for (int tries = 0; tries < 200 && !answer.ends_with(body); ++tries) {
    Client client(where());
    client.send(lastRequest);
    answer = client.receive();
  }
  EXPECT_TRUE(answer.ends_with(body));
}

TEST_F(EchoServerTest, AnAddressInUseIsAnErrorAndNothingListens) {
  start();
  const std::string inUse = listenAddressText(where());
  asio::io_context loop;
  SimulatedClock clock;
  EchoServer second(loop, {.responder = EchoResponder({}, {}), .limits = {}, .clock = clock});
  const std::array addresses{parseListenAddress("[::1]:0").value(),
                             parseListenAddress(inUse).value()};
  const auto listening = second.listen(addresses);
  ASSERT_FALSE(listening.has_value());
  EXPECT_EQ(listening.error().where, addresses[1]);
  EXPECT_EQ(listening.error().error, std::errc::address_in_use);
}

TEST_F(EchoServerTest, AnAddressThatTheMachineDoesNotHaveIsAnError) {
  start({"192.0.2.1:0"});
  ASSERT_FALSE(listening_.has_value());
  EXPECT_EQ(listening_.error().error, std::errc::address_not_available);
}

TEST_F(EchoServerTest, EndsInTheMiddleOfEverything) {
  start();
  std::vector<std::unique_ptr<Client>> clients;
  for (int count = 0; count < 30; ++count) {
    clients.push_back(std::make_unique<Client>(where()));
    clients.back()->send(count % 3 == 0 ? request : count % 3 == 1 ? "GET /" : "");
  }
  clients.front()->receive(body);
  stop();
  for (const auto& client : clients) client->receive();
  Client late(where());
  EXPECT_FALSE(late.connected());
}

}  // namespace
}  // namespace lanternfold
