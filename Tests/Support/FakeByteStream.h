// A connection in memory: the test is the peer.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Platform/ByteStream.h"
#include "Platform/Dispatch.h"
#include "Support/FatalError.h"

namespace lanternfold {

/// What the peer does takes effect on the queue, as works of it.
class FakeByteStream final : public ByteStream {
 public:
  /// `queue` outlives the stream.
  explicit FakeByteStream(DispatchQueue& queue) : queue_(queue) {}

  // The peer.

  void deliver(std::string bytes) {
    post([this, bytes = std::move(bytes)] {
      if (handlers_.received) handlers_.received(bytes);
    });
  }
  void end(End end) {
    post([this, end] {
      isGone_ = isGone_ || end == End::gone;
      if (handlers_.ended) handlers_.ended(end);
    });
  }
  /// Everything that was sent, and is now taken away.
  [[nodiscard]] std::string take() { return std::exchange(sent_, {}); }

  // The program.

  void start(Handlers handlers) override {
    if (handlers_.received || handlers_.ended) fatalError("a stream was started twice");
    handlers_ = std::move(handlers);
  }
  void send(std::string bytes) override {
    if (!isGone_) sent_ += bytes;
  }
  void flush(std::function<void()> done) override { queue_.async(std::move(done)); }

 private:
  void post(std::function<void()> work) {
    queue_.async([living = std::weak_ptr(alive_), work = std::move(work)] {
      if (!living.expired()) work();
    });
  }

  DispatchQueue& queue_;
  Handlers handlers_;
  std::string sent_;
  bool isGone_ = false;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace lanternfold
