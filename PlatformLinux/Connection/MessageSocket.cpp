#include "PlatformLinux/Connection/MessageSocket.h"

#include <array>
#include <memory>
#include <utility>
#include <vector>

#include <asio/buffer.hpp>
#include <asio/error.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/ip/udp.hpp>
#include <asio/redirect_error.hpp>
#include <asio/use_awaitable.hpp>
#include <asio/write.hpp>

namespace lanternfold {
namespace {

using Message = std::expected<std::optional<std::string>, std::error_code>;

/// Of a stream, at once.
constexpr std::size_t pieceSize = std::size_t{64} * 1024;
/// No datagram is larger.
constexpr std::size_t largestDatagram = std::size_t{64} * 1024;

auto into(std::error_code& error) { return asio::redirect_error(asio::use_awaitable, error); }

Message messageOf(std::string bytes) {
  if (bytes.empty()) return std::nullopt;
  return bytes;
}

/// What tcp and udp have in common.
template <typename Protocol>
class AsioMessageSocket : public MessageSocket {
 public:
  explicit AsioMessageSocket(asio::io_context& context) : socket_(context) {}

  asio::awaitable<std::error_code> connect(asio::ip::address address, std::uint16_t port) override {
    close();
    std::error_code error;
    co_await socket_.async_connect(typename Protocol::endpoint(address, port), into(error));
    co_return error;
  }

  void close() override {
    std::error_code ignored;
    // NOLINTNEXTLINE(bugprone-unused-return-value): what is closed is of no interest any more
    socket_.close(ignored);
  }

 protected:
  typename Protocol::socket& socket() { return socket_; }

 private:
  typename Protocol::socket socket_;
};

class StreamMessageSocket final : public AsioMessageSocket<asio::ip::tcp> {
 public:
  using AsioMessageSocket::AsioMessageSocket;

  asio::awaitable<std::error_code> send(std::string message) override {
    std::error_code error;
    co_await asio::async_write(socket(), asio::buffer(message), into(error));
    const bool isUnwanted =
        error == asio::error::broken_pipe || error == asio::error::connection_reset;
    co_return isUnwanted ? std::error_code() : error;
  }

  asio::awaitable<Message> receive() override {
    std::string bytes;
    std::vector<char> piece(pieceSize);
    while (true) {
      std::error_code error;
      const std::size_t size = co_await socket().async_read_some(asio::buffer(piece), into(error));
      bytes.append(piece.data(), size);
      if (error == asio::error::eof) co_return messageOf(std::move(bytes));
      if (error) co_return std::unexpected(error);
      if (bytes.size() > largestReplyBytes) {
        co_return std::unexpected(std::make_error_code(std::errc::message_size));
      }
    }
  }
};

class DatagramMessageSocket final : public AsioMessageSocket<asio::ip::udp> {
 public:
  using AsioMessageSocket::AsioMessageSocket;

  asio::awaitable<std::error_code> send(std::string message) override {
    std::error_code error;
    co_await socket().async_send(asio::buffer(message), into(error));
    co_return error;
  }

  asio::awaitable<Message> receive() override {
    // The kernel writes what is read of it: there is no need of zeros.
    const auto bytes = std::make_unique_for_overwrite<std::array<char, largestDatagram>>();
    std::error_code error;
    const std::size_t size = co_await socket().async_receive(asio::buffer(*bytes), into(error));
    if (error) co_return std::unexpected(error);
    co_return messageOf(std::string(bytes->data(), size));
  }
};

}  // namespace

std::unique_ptr<MessageSocket> makeMessageSocket(Transport transport, asio::io_context& context) {
  if (transport == Transport::udp) return std::make_unique<DatagramMessageSocket>(context);
  return std::make_unique<StreamMessageSocket>(context);
}

}  // namespace lanternfold
