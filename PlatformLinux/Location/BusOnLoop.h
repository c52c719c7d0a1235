// A connection to a message bus on the event loop: its socket and its timer are waited for there.
//
// Made by: `BusLocationPortal`. Used by: the conversations on that bus. Internal to this folder: it
// brings in sdbus-c++.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <sdbus-c++/sdbus-c++.h>

#include "PlatformLinux/System/EventLoop.h"

namespace lanternfold {

/// Everything on the loop's thread. Handlers of the connection run inside of `pump`, where nothing
/// of the connection may be destroyed: whoever is done posts that to the loop.
class BusOnLoop : public std::enable_shared_from_this<BusOnLoop> {
 public:
  using LostHandler = std::function<void()>;

  /// `lost` is called once, when the bus has gone away; never after `close`.
  BusOnLoop(EventLoop& loop, std::unique_ptr<sdbus::IConnection> connection, LostHandler lost);
  ~BusOnLoop();
  BusOnLoop(const BusOnLoop&) = delete;
  BusOnLoop& operator=(const BusOnLoop&) = delete;

  [[nodiscard]] EventLoop& loop() { return loop_; }
  [[nodiscard]] sdbus::IConnection& connection() { return *connection_; }

  /// Takes what has come, then waits for more. To be called after whatever was sent.
  void pump();
  /// Nothing is waited for afterwards.
  void close();

 private:
  struct Waits;

  [[nodiscard]] bool takeMessages();
  void wait();
  void lose();

  EventLoop& loop_;
  const std::unique_ptr<sdbus::IConnection> connection_;
  LostHandler lost_;
  std::unique_ptr<Waits> waits_;
  std::uint64_t waitNumber_ = 0;  ///< of the wait that counts; older ones mean nothing
  bool isPumping_ = false;
};

}  // namespace lanternfold
