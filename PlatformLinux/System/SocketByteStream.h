// A connected stream socket that somebody else has opened, such as the one end of a socket pair
// that a program is started with.
//
// Made by: the extension's composition.
#pragma once

#include <expected>
#include <memory>
#include <string>
#include <system_error>

#include "Platform/ByteStream.h"
#include "Platform/Dispatch.h"

namespace lanternfold {

class EventLoop;

/// Reads in pieces of 64 KiB, and not while more than a megabyte waits for the peer.
class SocketByteStream final : public ByteStream {
 public:
  /// No error when `descriptor` is a connected stream socket. To be asked before the program opens
  /// descriptors of its own, one of which might get that number.
  [[nodiscard]] static std::error_code faultOf(int descriptor);

  /// Takes over `descriptor`, which no program that is started later inherits. Error: as `faultOf`
  /// says, or the system's, which watches a limited number; the descriptor stays the caller's then.
  /// `loop` and `queue` outlive the stream.
  [[nodiscard]] static std::expected<std::unique_ptr<SocketByteStream>, std::error_code> adopt(
      int descriptor, EventLoop& loop, DispatchQueue& queue);

  /// Closes the socket; on the stream's queue, or after its last work.
  ~SocketByteStream() override;

  void start(Handlers handlers) override;
  void send(std::string bytes) override;
  void flush(std::function<void()> done) override;

 private:
  class Connection;
  explicit SocketByteStream(std::shared_ptr<Connection> connection);

  std::shared_ptr<Connection> connection_;
};

}  // namespace lanternfold
