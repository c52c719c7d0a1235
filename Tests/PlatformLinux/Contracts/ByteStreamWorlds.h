// Both sides of the stream's seam, each with a peer that a test plays.
#pragma once

#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/EventLoop.h"
#include "PlatformLinux/System/FileDescriptor.h"
#include "PlatformLinux/System/SocketByteStream.h"
#include "Tests/Support/FakeByteStream.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {

/// Bounds what would otherwise never end.
inline constexpr std::chrono::seconds streamPatience{20};

class LinuxStreamWorld {
 public:
  LinuxStreamWorld() {
    std::array<int, 2> ends{};
    EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), 0);
    peer_ = FileDescriptor(ends[0]);
    auto stream = SocketByteStream::adopt(ends[1], loop_, dispatch_.mainQueue());
    EXPECT_TRUE(stream);
    stream_ = *std::move(stream);
  }

  [[nodiscard]] ByteStream& stream() { return *stream_; }
  void deliver(const std::string& bytes) {
    EXPECT_EQ(::send(peer_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL),
              static_cast<ssize_t>(bytes.size()));
  }
  void endInput() { EXPECT_EQ(::shutdown(peer_.get(), SHUT_WR), 0); }
  void close() { peer_ = FileDescriptor(-1); }
  /// What has arrived at the peer by now.
  [[nodiscard]] std::string take() {
    std::string taken;
    std::array<char, 65536> piece{};
    for (;;) {
      const ssize_t size = ::recv(peer_.get(), piece.data(), piece.size(), MSG_DONTWAIT);
      if (size <= 0) return taken;
      taken.append(piece.data(), static_cast<std::size_t>(size));
    }
  }
  bool runUntil(const std::function<bool()>& done) {
    const auto deadline = std::chrono::steady_clock::now() + streamPatience;
    while (!done()) {
      if (std::chrono::steady_clock::now() > deadline) return false;
      (void)dispatch_.runMainUntil(std::chrono::steady_clock::now() + std::chrono::milliseconds(2));
    }
    return true;
  }
  void letGo() { stream_.reset(); }

 private:
  EventLoop loop_;
  AsioDispatch dispatch_{loop_};
  FileDescriptor peer_{-1};
  std::unique_ptr<SocketByteStream> stream_;
};

class FakeStreamWorld {
 public:
  [[nodiscard]] ByteStream& stream() { return *stream_; }
  void deliver(std::string bytes) { stream_->deliver(std::move(bytes)); }
  void endInput() { stream_->end(ByteStream::End::noMoreInput); }
  void close() { stream_->end(ByteStream::End::gone); }
  [[nodiscard]] std::string take() { return stream_->take(); }
  bool runUntil(const std::function<bool()>& done) {
    dispatch_.runReady();
    return dispatch_.runUntil(done, streamPatience);
  }
  void letGo() { stream_.reset(); }

 private:
  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  std::unique_ptr<FakeByteStream> stream_ = std::make_unique<FakeByteStream>(dispatch_.mainQueue());
};

}  // namespace lanternfold
