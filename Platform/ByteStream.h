// The seam to a connection with one peer: bytes in, bytes out.
//
// Linux side: `SocketByteStream`. Fake: `FakeByteStream`. Both pass the same contract tests.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace lanternfold {

/// Everything belongs on one queue, on which the handlers are called, too. Handlers may do anything
/// but destroy the stream.
class ByteStream {
 public:
  enum class End {
    noMoreInput,  ///< the peer sends nothing any more, and still takes answers
    gone,         ///< nothing reaches the peer any more
  };

  struct Handlers {
    /// The next bytes, at least one. No more are read before it has returned, nor while the peer
    /// has left too much unread.
    std::function<void(std::string_view)> received;
    /// The last call, but that `gone` may follow upon `noMoreInput`.
    std::function<void(End)> ended;
  };

  virtual ~ByteStream() = default;

  /// Once, before anything else.
  virtual void start(Handlers handlers) = 0;

  /// Sends `bytes` behind what was sent before; never blocks, and keeps them until the peer takes
  /// them. To a peer that is gone nothing is sent.
  virtual void send(std::string bytes) = 0;

  /// Calls `done` later, once, when everything that was sent has left the program, or cannot any
  /// more.
  virtual void flush(std::function<void()> done) = 0;
};

}  // namespace lanternfold
