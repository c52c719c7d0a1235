// The two sides of the path monitor's seam, each with a network that can be changed and a way of
// letting updates come, for the contract tests.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <sys/resource.h>
#include <thread>

#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/EventLoop.h"
#include "PlatformLinux/System/LinuxPathMonitor.h"
#include "Tests/PlatformLinux/NetworkNamespace.h"
#include "Tests/Support/FakePathMonitor.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {

/// The kernel, in a namespace of the test's own with the veth "en0" and its unlisted peer. The
/// test's thread is the main thread.
class LinuxPathWorld {
 public:
  void open() {
    ENTER_NETWORK_NAMESPACE(network_);
    ASSERT_TRUE(
        NetworkNamespace::run("ip link add en0 type veth peer name far && "
                              "ip addr add 192.0.2.2/24 dev en0 && "
                              "ip link set far up && ip link set en0 up"));
    // The kernel may take a second to notice the carrier of a link that was just made.
    ASSERT_TRUE(NetworkNamespace::run(
        "for try in $(seq 300); do grep -q up /sys/class/net/en0/operstate && exit 0; sleep 0.01; "
        "done; exit 1"));
    loop_ = std::make_unique<EventLoop>();
    dispatch_ = std::make_unique<AsioDispatch>(*loop_);
    factory_ = std::make_unique<LinuxPathMonitorFactory>(*loop_);
  }

  [[nodiscard]] PathMonitorFactory& factory() { return *factory_; }
  [[nodiscard]] DispatchQueue& queue() { return dispatch_->mainQueue(); }
  [[nodiscard]] EventLoop& loop() { return *loop_; }

  void connect() {
    ASSERT_TRUE(NetworkNamespace::run("ip route replace default via 192.0.2.1 dev en0"));
  }
  void disconnect() {
    ASSERT_TRUE(NetworkNamespace::run("ip route del default via 192.0.2.1 dev en0"));
  }

  void changeWhatThePathDoesNotTell() {
    ASSERT_TRUE(NetworkNamespace::run("ip addr add 198.51.100.7/24 dev en0"));
  }

  /// Starts the monitor while no descriptor is to be had, and so no socket for the kernel's
  /// reports.
  void startDeaf(PathMonitor& monitor) {
    rlimit usual{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &usual), 0);
    const rlimit none{.rlim_cur = 0, .rlim_max = usual.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    monitor.start(queue());
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &usual), 0);
  }

  /// Lets updates come until `done`; false after a second without it.
  [[nodiscard]] bool runUntil(const std::function<bool()>& done) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(1);
    while (!done()) {
      const auto now = std::chrono::steady_clock::now();
      if (now > limit) return false;
      static_cast<void>(dispatch_->runMainUntil(now + std::chrono::milliseconds(2)));
    }
    return true;
  }
  /// Lets every update come that is on its way.
  void settle() {
    static_cast<void>(
        dispatch_->runMainUntil(std::chrono::steady_clock::now() + std::chrono::milliseconds(300)));
  }

 private:
  std::unique_ptr<NetworkNamespace> network_;
  std::unique_ptr<EventLoop> loop_;
  std::unique_ptr<AsioDispatch> dispatch_;
  std::unique_ptr<LinuxPathMonitorFactory> factory_;
};

/// The fake over virtual time.
class FakePathWorld {
 public:
  void open() { factory_.deliver(path(PathStatus::unsatisfied)); }

  [[nodiscard]] PathMonitorFactory& factory() { return factory_; }
  [[nodiscard]] DispatchQueue& queue() { return dispatch_.mainQueue(); }

  void connect() { factory_.deliver(path(PathStatus::satisfied)); }
  void disconnect() { factory_.deliver(path(PathStatus::unsatisfied)); }

  void changeWhatThePathDoesNotTell() { factory_.deliver(path(PathStatus::unsatisfied)); }

  void startDeaf(PathMonitor& monitor) {
    factory_.stopTelling();
    monitor.start(queue());
  }

  [[nodiscard]] bool runUntil(const std::function<bool()>& done) {
    return done() || dispatch_.runUntil(done, std::chrono::seconds(1));
  }
  void settle() { dispatch_.advance(std::chrono::seconds(1)); }

 private:
  static NetworkPath path(PathStatus status) {
    return {status, {{"en0", 2, PathInterfaceType::wiredEthernet}}};
  }

  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  FakePathMonitorFactory factory_;
};

}  // namespace lanternfold
