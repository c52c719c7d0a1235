// The two sides of the URL seam, each with hosts that behave as a test wants, for the contract
// tests.
#pragma once

#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <thread>

#include "Tests/PlatformLinux/Url/ScriptedServer.h"
#include "Tests/PlatformLinux/Url/UrlWorld.h"
#include "Tests/Support/FakeUrlSessions.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold::test {

/// Real sockets in a namespace of the test's own. Each operation returns a URL.
class LinuxUrlWorld {
 public:
  void open() { ASSERT_NO_FATAL_FAILURE(world_.open()); }

  [[nodiscard]] std::string answering(const std::string& body) {
    return serve(test::answering(httpAnswer(body)));
  }
  [[nodiscard]] std::string silent() { return serve(neverAnswering()); }
  /// Answers within about half a second, and is never silent for a tenth.
  [[nodiscard]] std::string trickling(const std::string& body) {
    return serve([answer = httpAnswer(body)](ServerConnection& connection) {
      static_cast<void>(connection.readRequest());
      for (const char& each : answer) {
        if (!connection.pause(std::chrono::milliseconds(10)) || !connection.send({&each, 1})) break;
      }
    });
  }
  /// Says a little all the time and never ends.
  [[nodiscard]] std::string endless() {
    return serve([](ServerConnection& connection) {
      static_cast<void>(connection.readRequest());
      connection.send("HTTP/1.1 200 OK\r\n\r\n");
      while (connection.pause(std::chrono::milliseconds(20)) && connection.send("x")) {
      }
    });
  }
  [[nodiscard]] std::string redirecting(const std::string& target) {
    return serve(test::answering(httpAnswer("", "302 Found", "Location: " + target + "\r\n")));
  }
  [[nodiscard]] std::string closing() {
    return serve([](ServerConnection& connection) { static_cast<void>(connection.readRequest()); });
  }
  [[nodiscard]] std::string refusing() { return "http://127.0.0.1:9/"; }
  [[nodiscard]] std::string unknownHost() { return "http://nobody.example/"; }
  /// A host of IPv4 alone.
  [[nodiscard]] std::string answeringOverIPv4(const std::string& body) { return answering(body); }

  [[nodiscard]] UrlSessions& sessions() { return world_.sessions(); }
  [[nodiscard]] Dispatch& dispatch() { return world_.dispatch(); }
  void destroySessions() { world_.destroySessions(); }
  [[nodiscard]] bool runUntil(const std::function<bool()>& done) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!done() && std::chrono::steady_clock::now() < limit) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return done();
  }
  /// Long enough for what would come by mistake.
  void settle() { std::this_thread::sleep_for(std::chrono::milliseconds(150)); }
  /// How many requests the hosts have got.
  [[nodiscard]] int requests() const {
    int sum = 0;
    for (const ScriptedServer& server : servers_) sum += server.accepted();
    return sum;
  }

 private:
  std::string serve(ScriptedServer::Script script) {
    return servers_.emplace_back(std::move(script)).url();
  }

  UrlWorld world_;
  std::list<ScriptedServer> servers_;
};

/// One thread and virtual time.
class FakeUrlWorld {
 public:
  void open() {}

  [[nodiscard]] std::string answering(const std::string& body) {
    return serve({.answer = {.data = body, .error = {}}});
  }
  [[nodiscard]] std::string silent() { return serve({.delay = std::chrono::nanoseconds::max()}); }
  [[nodiscard]] std::string trickling(const std::string& body) {
    return serve({.answer = {.data = body, .error = {}},
                  .delay = std::chrono::milliseconds(500),
                  .manner = FakeUrlSessions::Server::Manner::trickling});
  }
  [[nodiscard]] std::string endless() {
    return serve({.delay = std::chrono::nanoseconds::max(),
                  .manner = FakeUrlSessions::Server::Manner::trickling});
  }
  [[nodiscard]] std::string redirecting(const std::string& target) {
    return serve({.redirectsTo = target});
  }
  [[nodiscard]] std::string closing() { return failing(UrlErrorCode::networkConnectionLost); }
  [[nodiscard]] std::string refusing() { return failing(UrlErrorCode::cannotConnectToHost); }
  [[nodiscard]] std::string unknownHost() { return "http://nobody.example/"; }
  [[nodiscard]] std::string answeringOverIPv4(const std::string& body) {
    return serve({.answer = {.data = body, .error = {}}, .family = UrlAddressFamily::ipv4});
  }

  [[nodiscard]] UrlSessions& sessions() { return *sessions_; }
  [[nodiscard]] Dispatch& dispatch() { return dispatch_; }
  void destroySessions() { sessions_.reset(); }
  [[nodiscard]] bool runUntil(const std::function<bool()>& done) {
    return dispatch_.runUntil(done, std::chrono::seconds(30));
  }
  void settle() {
    static_cast<void>(dispatch_.runUntil([] { return false; }, std::chrono::milliseconds(150)));
  }
  [[nodiscard]] int requests() const { return static_cast<int>(sessions_->exchanges().size()); }

 private:
  std::string serve(FakeUrlSessions::Server server) {
    const std::string url = "http://host" + std::to_string(++hosts_) + ".example/";
    sessions_->setServer(url, std::move(server));
    return url;
  }
  std::string failing(UrlErrorCode code) {
    return serve({.answer = {.data = std::nullopt, .error = code}});
  }

  int hosts_ = 0;
  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  std::unique_ptr<FakeUrlSessions> sessions_ = std::make_unique<FakeUrlSessions>(dispatch_);
};

}  // namespace lanternfold::test
