// Whether an X server is there, asked of sockets that tests have in its place.
#include <algorithm>
#include <array>
#include <cstddef>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

#include "HostProgram/Display/XServerSurvey.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

/// A display of a number that no other process's tests have.
class XServerSurveyTest : public testing::Test {
 protected:
  void listen(int mostWaiting = 5) {
    const std::string name = std::string(1, '\0') + "/tmp/.X11-unix/X" + number_;
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    name.copy(address.sun_path, sizeof address.sun_path);
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
    listener_ = FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    ASSERT_EQ(::bind(listener_.get(), reinterpret_cast<sockaddr*>(&address), size), 0);
    ASSERT_EQ(::listen(listener_.get(), mostWaiting), 0);
  }
  XServer askOneThatSays(const std::string& answer) {
    listen();
    XServer server = XServer::unreachable;
    std::thread client([&] { server = survey_.ask(display_); });
    const FileDescriptor connection(::accept(listener_.get(), nullptr, nullptr));
    std::array<char, 100> request{};
    const ssize_t size = ::recv(connection.get(), request.data(), request.size(), 0);
    request_.assign(request.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    (void)::send(connection.get(), answer.data(), answer.size(), MSG_NOSIGNAL);
    (void)::shutdown(connection.get(), SHUT_WR);
    client.join();
    return server;
  }

  const std::string number_ = std::to_string(10000 + ::getpid() % 50000);
  const std::string display_ = ":" + number_;
  FileDescriptor listener_{-1};
  std::string request_;
  XServerSurvey survey_{1s};
};

TEST_F(XServerSurveyTest, WhereNobodyListensThereIsNone) {
  EXPECT_EQ(survey_.ask(display_), XServer::unreachable);
}

TEST_F(XServerSurveyTest, ANameThatIsNoneIsNoServers) {
  for (const char* name : {":", "display", ":x", ":0.x", ""}) {
    EXPECT_EQ(survey_.ask(name), XServer::unreachable) << name;
  }
}

TEST_F(XServerSurveyTest, AnyAnswerIsOne) {
  const std::string refusal("\0\x0c", 2);
  EXPECT_EQ(askOneThatSays(refusal), XServer::usable);
}

TEST_F(XServerSurveyTest, TheQuestionIsASetupWithoutAuthority) {
  (void)askOneThatSays("\1");
  ASSERT_EQ(request_.size(), 12);
  EXPECT_EQ(request_[2] + request_[3], 11);  // the protocol, in either order of bytes
}

TEST_F(XServerSurveyTest, OneThatHangsUpWithoutAWordIsNone) {
  EXPECT_EQ(askOneThatSays(""), XServer::unreachable);
}

TEST_F(XServerSurveyTest, OneThatSaysNothingIsGivenUp) {
  listen();
  EXPECT_EQ(survey_.ask(display_), XServer::silent);
  EXPECT_EQ(survey_.ask("unix" + display_ + ".1"), XServer::silent);
}

TEST_F(XServerSurveyTest, OneThatTakesNoConnectionsIsGivenUp) {
  listen(0);
  // The first one waits in the only place for those that are not taken yet, for good.
  EXPECT_EQ(survey_.ask(display_), XServer::silent);
  EXPECT_EQ(survey_.ask(display_), XServer::silent);
}

TEST_F(XServerSurveyTest, OneOnAnotherMachineIsNotAsked) {
  listen();
  EXPECT_EQ(survey_.ask("elsewhere.invalid" + display_), XServer::usable);
}

/// A server that ends with its last client would be gone before the toolkit comes.
TEST_F(XServerSurveyTest, TheConnectionLastsUntilItIsLetGo) {
  listen();
  std::thread client([&] { EXPECT_EQ(survey_.ask(display_), XServer::usable); });
  const FileDescriptor connection(::accept(listener_.get(), nullptr, nullptr));
  char byte = 1;
  EXPECT_EQ(::send(connection.get(), &byte, 1, MSG_NOSIGNAL), 1);
  client.join();
  std::array<char, 12> request{};
  EXPECT_EQ(::recv(connection.get(), request.data(), request.size(), MSG_WAITALL), 12);
  EXPECT_EQ(::recv(connection.get(), &byte, 1, MSG_DONTWAIT), -1);
  survey_.letGo();
  EXPECT_EQ(::recv(connection.get(), &byte, 1, 0), 0);
}

}  // namespace
}  // namespace lanternfold
