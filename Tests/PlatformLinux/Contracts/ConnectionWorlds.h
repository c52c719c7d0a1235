// Both sides of the connection's seam, each with a peer that a test plays.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "PlatformLinux/Connection/SocketConnection.h"
#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/EventLoop.h"
#include "Tests/PlatformLinux/LoopbackPeer.h"
#include "Tests/Support/FakeConnection.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {

/// The queue is the main one, which runs on the test's thread.
class LinuxConnectionWorld {
 public:
  LinuxConnectionWorld() { aim(peer_.port()); }

  /// From now on `connection` is one to a peer that nobody is.
  void refuse() { aim(freePort(SOCK_STREAM)); }

  [[nodiscard]] std::shared_ptr<Connection>& connection() { return connection_; }
  [[nodiscard]] DispatchQueue& queue() { return dispatch_.mainQueue(); }
  [[nodiscard]] std::string endpoint() const { return "127.0.0.1:" + std::to_string(peer_.port()); }
  void accept() { peer_.accept(); }
  void reply(const std::string& bytes) {
    peer_.send(bytes);
    peer_.endOutput();
  }
  void replyWithoutData() { peer_.endOutput(); }
  [[nodiscard]] std::string received(std::size_t size) { return peer_.receive(size); }

  bool runUntil(const std::function<bool()>& done) {
    const auto deadline =
        std::chrono::steady_clock::now() + std::chrono::milliseconds(peerPatience);
    while (!done()) {
      if (std::chrono::steady_clock::now() > deadline) return false;
      (void)dispatch_.runMainUntil(std::chrono::steady_clock::now() + std::chrono::milliseconds(2));
    }
    return true;
  }
  /// For what must not come.
  void runOn() {
    (void)dispatch_.runMainUntil(std::chrono::steady_clock::now() + std::chrono::milliseconds(50));
  }

 private:
  void aim(std::uint16_t port) {
    connection_ = factory_.connection({Transport::tcp, "127.0.0.1", port});
  }

  EventLoop loop_;
  AsioDispatch dispatch_{loop_};
  SocketConnectionFactory factory_{loop_};
  LoopbackListener peer_;
  std::shared_ptr<Connection> connection_;
};

class FakeConnectionWorld {
 public:
  FakeConnectionWorld() { fake_ = std::make_shared<FakeConnection>(), connection_ = fake_; }

  void refuse() { isRefused_ = true; }

  [[nodiscard]] std::shared_ptr<Connection>& connection() { return connection_; }
  [[nodiscard]] DispatchQueue& queue() { return dispatch_.mainQueue(); }
  [[nodiscard]] std::string endpoint() const { return "192.0.2.1:7"; }
  void accept() { fake_->becomeReady(endpoint()); }
  void reply(const std::string& bytes) { fake_->reply(bytes); }
  void replyWithoutData() { fake_->replyWithoutData(); }
  [[nodiscard]] std::string received(std::size_t) {
    std::string all;
    for (const std::string& each : fake_->sent()) all += each;
    return all;
  }

  bool runUntil(const std::function<bool()>& done) {
    runOn();
    return done();
  }
  void runOn() {
    if (isRefused_ && fake_->state() == ConnectionState::preparing) {
      fake_->fail(std::make_error_code(std::errc::connection_refused));
    }
    dispatch_.runReady();
  }

 private:
  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  std::shared_ptr<FakeConnection> fake_;
  std::shared_ptr<Connection> connection_;
  bool isRefused_ = false;
};

}  // namespace lanternfold
