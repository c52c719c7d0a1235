#include "PlatformLinux/System/SocketByteStream.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <utility>
#include <vector>

#include <asio/buffer.hpp>
#include <asio/generic/stream_protocol.hpp>
#include <asio/io_context.hpp>
#include <asio/write.hpp>

#include "PlatformLinux/System/EventLoop.h"
#include "Support/FatalError.h"

namespace lanternfold {
namespace {

constexpr std::size_t pieceSize = std::size_t{64} * 1024;
constexpr std::size_t mostUnread = std::size_t{1024} * 1024;

/// Whether the other end is closed altogether, and not only for what it sends.
bool isPeerGone(int descriptor) {
  pollfd socket{.fd = descriptor, .events = 0, .revents = 0};
  return ::poll(&socket, 1, 0) == 1 && (socket.revents & (POLLHUP | POLLERR)) != 0;
}

std::expected<int, std::error_code> option(int descriptor, int name) {
  int value = 0;
  socklen_t size = sizeof(value);
  if (::getsockopt(descriptor, SOL_SOCKET, name, &value, &size) == 0) return value;
  return std::unexpected(std::error_code(errno, std::generic_category()));
}

/// A program that is started later does not inherit it.
std::error_code keepToThisProgram(int descriptor) {
  const int flags = ::fcntl(descriptor, F_GETFD);
  if (flags < 0 || ::fcntl(descriptor, F_SETFD, flags | FD_CLOEXEC) < 0) {
    return {errno, std::generic_category()};
  }
  return {};
}

}  // namespace

/// The socket on the event loop, and its handlers on the queue. It outlives the stream for as long
/// as a work or a handler under way holds it, and does nothing any more.
class SocketByteStream::Connection : public std::enable_shared_from_this<Connection> {
 public:
  Connection(EventLoop& loop, DispatchQueue& queue)
      : loop_(loop), queue_(queue), socket_(loop.context()) {}

  /// First of all.
  std::error_code assign(int descriptor) {
    const int family = option(descriptor, SO_DOMAIN).value_or(AF_UNIX);
    std::error_code error;
    static_cast<void>(socket_.assign(asio::generic::stream_protocol(family, 0), descriptor, error));
    // Asio's own kind of error is equal to none of the standard's.
    return {error.value(), std::generic_category()};
  }

  // On the queue.

  void start(Handlers handlers) {
    handlers_ = std::move(handlers);
    loop_.post([self = shared_from_this()] { self->read(); });
  }

  void send(std::string bytes) {
    if (isGone_) return;
    loop_.post([self = shared_from_this(), bytes = std::move(bytes)]() mutable {
      self->unread_ += bytes.size();
      self->waiting_ += bytes;
      self->write();
    });
  }

  void flush(std::function<void()> done) {
    loop_.post([self = shared_from_this(), done = std::move(done)]() mutable {
      self->flushed_.push_back(std::move(done));
      self->write();
    });
  }

  void close() {
    handlers_ = {};
    loop_.runAndWait([this] {
      isClosed_ = true;
      std::error_code ignored;
      // NOLINTNEXTLINE(bugprone-unused-return-value): what is closed is of no interest any more
      socket_.close(ignored);
      flushed_.clear();
    });
  }

 private:
  // On the event loop.

  void read() {
    if (isClosed_ || isReading_ || isAtEnd_) return;
    if (unread_ > mostUnread) {
      isPaused_ = true;
      return;
    }
    isReading_ = true;
    socket_.async_read_some(
        asio::buffer(piece_),
        [self = shared_from_this()](const std::error_code& error, std::size_t size) {
          self->isReading_ = false;
          self->taken(error, size);
        });
  }

  void taken(const std::error_code& error, std::size_t size) {
    if (isClosed_) return;
    if (error) {
      isAtEnd_ = true;
      const bool isGone = error != asio::error::eof || isPeerGone(socket_.native_handle());
      report(isGone ? End::gone : End::noMoreInput);
      return;
    }
    queue_.async([self = shared_from_this(), bytes = std::string(piece_.data(), size)] {
      if (self->handlers_.received) self->handlers_.received(bytes);
      self->loop_.post([self] { self->read(); });
    });
  }

  void write() {
    if (isClosed_ || isWriting_) return;
    if (waiting_.empty() || hasFailed_) {
      unread_ = 0;
      waiting_.clear();
      return reportFlushed();
    }
    isWriting_ = true;
    outgoing_ = std::exchange(waiting_, {});
    asio::async_write(socket_, asio::buffer(outgoing_),
                      [self = shared_from_this()](const std::error_code& error, std::size_t) {
                        self->isWriting_ = false;
                        self->written(error);
                      });
  }

  void written(const std::error_code& error) {
    if (isClosed_) return;
    unread_ -= outgoing_.size();
    outgoing_.clear();
    if (error) {
      hasFailed_ = true;
      // What a peer has said before it went is still to be read, and then its end.
      if (isAtEnd_ || !isPeerGone(socket_.native_handle())) report(End::gone);
    }
    write();
    if (std::exchange(isPaused_, false)) read();
  }

  void report(End end) {
    queue_.async([self = shared_from_this(), end] {
      if (self->isGone_) return;
      self->isGone_ = end == End::gone;
      if (self->handlers_.ended) self->handlers_.ended(end);
    });
  }

  void reportFlushed() {
    for (auto& done : std::exchange(flushed_, {})) queue_.async(std::move(done));
  }

  EventLoop& loop_;
  DispatchQueue& queue_;
  // Used on the queue.
  Handlers handlers_;
  bool isGone_ = false;
  // Used on the event loop.
  asio::generic::stream_protocol::socket socket_;
  std::array<char, pieceSize> piece_{};
  std::string waiting_;
  std::string outgoing_;
  std::size_t unread_ = 0;  ///< bytes of both
  std::vector<std::function<void()>> flushed_;
  bool isReading_ = false;
  bool isPaused_ = false;  ///< until the peer has taken what was sent
  bool isWriting_ = false;
  bool isAtEnd_ = false;
  bool hasFailed_ = false;
  bool isClosed_ = false;
};

std::error_code SocketByteStream::faultOf(int descriptor) {
  const auto type = option(descriptor, SO_TYPE);
  if (!type) return type.error();
  if (*type != SOCK_STREAM) return std::make_error_code(std::errc::wrong_protocol_type);
  sockaddr_storage peer{};
  socklen_t size = sizeof(peer);
  // One that listens, or was never connected, has nobody on its other end.
  if (::getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &size) != 0) {
    return {errno, std::generic_category()};
  }
  return {};
}

std::expected<std::unique_ptr<SocketByteStream>, std::error_code> SocketByteStream::adopt(
    int descriptor, EventLoop& loop, DispatchQueue& queue) {
  if (const std::error_code fault = faultOf(descriptor)) return std::unexpected(fault);
  if (const std::error_code fault = keepToThisProgram(descriptor)) return std::unexpected(fault);
  auto connection = std::make_shared<Connection>(loop, queue);
  if (const std::error_code fault = connection->assign(descriptor)) return std::unexpected(fault);
  return std::unique_ptr<SocketByteStream>(new SocketByteStream(std::move(connection)));
}

SocketByteStream::SocketByteStream(std::shared_ptr<Connection> connection)
    : connection_(std::move(connection)) {}

SocketByteStream::~SocketByteStream() { connection_->close(); }

void SocketByteStream::start(Handlers handlers) { connection_->start(std::move(handlers)); }

void SocketByteStream::send(std::string bytes) { connection_->send(std::move(bytes)); }

void SocketByteStream::flush(std::function<void()> done) { connection_->flush(std::move(done)); }

}  // namespace lanternfold
