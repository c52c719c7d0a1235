// One connection of a client: requests in, answers out, one after the other, everything bounded in
// bytes and in time.
//
// Made by: `EchoServer`, for each client that it accepts.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>

#include "EchoService/EchoConnectionSettings.h"
#include "EchoService/HttpRequestParser.h"

namespace lanternfold {

/// All on the thread of the socket's loop. It keeps itself until it has closed.
class EchoConnection : public std::enable_shared_from_this<EchoConnection> {
 public:
  /// Called once, when the connection has closed by itself; not upon `close`.
  using Closed = std::function<void(const std::shared_ptr<EchoConnection>&)>;

  EchoConnection(asio::ip::tcp::socket socket, IpAddress peer,
                 std::shared_ptr<const EchoConnectionSettings> settings, Closed closed);

  /// Answers requests until either side has had enough.
  void serve();
  /// Tells the client to come back later.
  void refuse();
  /// At once, whatever is under way.
  void close();

 private:
  enum class State { reading, writing, lingering, closed };

  void awaitRequest();
  void read();
  void take(std::size_t size);
  void answer(const ParsedHttpRequest& parsed);
  void answerLast(const HttpResponse& response);
  void write(std::string bytes, AfterResponse after);
  void written(AfterResponse after);
  void linger();
  void drain();
  void setDeadline(std::chrono::milliseconds time);
  void deadlinePassed();
  void end();

  asio::ip::tcp::socket socket_;
  asio::steady_timer timer_;
  IpAddress peer_;
  std::shared_ptr<const EchoConnectionSettings> settings_;
  Closed closed_;
  State state_ = State::reading;
  std::uint64_t deadline_ = 0;  // which one is running: an earlier one that comes late says nothing
  bool requestBegun_ = true;    // the running deadline is that of a header
  int requests_ = 0;
  std::size_t drainedBytes_ = 0;
  std::string received_;  // never more than the longest request
  std::string outgoing_;
  std::array<char, 2048> chunk_{};
};

}  // namespace lanternfold
