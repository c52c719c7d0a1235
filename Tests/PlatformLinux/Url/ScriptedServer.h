// A small TCP server of a test's own that does to each client what the test says, well or badly.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "PlatformLinux/System/FileDescriptor.h"

namespace lanternfold::test {

/// One client. Whatever waits ends when the server does.
class ServerConnection {
 public:
  ServerConnection(int socket, int ending) : socket_(socket), ending_(ending) {}

  /// Up to the empty line; empty when the client leaves before.
  [[nodiscard]] std::string readRequest();
  /// As much as the client takes; whether that was all.
  bool send(std::string_view bytes);
  /// Whether the client is still there afterwards.
  bool pause(std::chrono::milliseconds duration);
  void waitUntilTheClientLeaves();
  /// Ends the connection the hard way.
  void reset();

  [[nodiscard]] int socket() const { return socket_.get(); }

 private:
  [[nodiscard]] bool waitFor(short events, int milliseconds) const;

  FileDescriptor socket_;
  int ending_;
};

/// Listens in the network namespace of the thread that makes it.
class ScriptedServer {
 public:
  using Script = std::function<void(ServerConnection&)>;

  /// `address` is numeric; port 0 for any that is free.
  explicit ScriptedServer(Script script, const std::string& address = "127.0.0.1",
                          std::uint16_t port = 0);
  ~ScriptedServer();
  ScriptedServer(const ScriptedServer&) = delete;
  ScriptedServer& operator=(const ScriptedServer&) = delete;

  [[nodiscard]] std::uint16_t port() const { return port_; }
  /// "http://127.0.0.1:40000/path"; `host` instead of the address when it is given.
  [[nodiscard]] std::string url(const std::string& path = "/", const std::string& host = {}) const;
  /// Clients accepted so far.
  [[nodiscard]] int accepted() const { return accepted_; }
  /// Those that are being served.
  [[nodiscard]] int open() const { return open_; }

 private:
  void acceptClients();

  const Script script_;
  const std::string address_;
  std::uint16_t port_ = 0;
  FileDescriptor listener_{-1};
  FileDescriptor ending_;
  std::atomic<int> accepted_ = 0;
  std::atomic<int> open_ = 0;
  std::thread thread_;
};

/// "HTTP/1.1 200 OK" with a length, for `ServerConnection::send`.
[[nodiscard]] std::string httpAnswer(std::string_view body, std::string_view statusLine = "200 OK",
                                     std::string_view headerLines = {});

/// Reads each request and gives this answer.
[[nodiscard]] ScriptedServer::Script answering(std::string answer);

/// Reads each request and says nothing until the client leaves.
[[nodiscard]] ScriptedServer::Script neverAnswering();

}  // namespace lanternfold::test
