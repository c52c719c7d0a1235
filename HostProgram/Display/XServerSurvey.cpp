#include "HostProgram/Display/XServerSurvey.h"

#include <bit>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <utility>
#include <xcb/xcb.h>

namespace lanternfold {
namespace {

constexpr std::string_view sockets = "/tmp/.X11-unix/X";

struct DisplayName {
  bool isLocal = false;
  int number = 0;
};

/// None when that is no display's name. Of an empty one the library would take DISPLAY's.
std::optional<DisplayName> parsed(const std::string& name) {
  if (name.empty()) return std::nullopt;
  char* text = nullptr;
  int number = 0;
  if (xcb_parse_display(name.c_str(), &text, &number, nullptr) == 0) return std::nullopt;
  const std::unique_ptr<char, decltype(&std::free)> kept(text, std::free);
  const std::string_view machine = text;
  return DisplayName{.isLocal = machine.empty() || machine == "unix", .number = number};
}

FileDescriptor socketWith(std::chrono::seconds limit) {
  FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  const timeval wait{.tv_sec = limit.count(), .tv_usec = 0};
  // The first is that of the connection, too, which waits when nobody takes connections.
  for (const int option : {SO_SNDTIMEO, SO_RCVTIMEO}) {
    (void)::setsockopt(socket.get(), SOL_SOCKET, option, &wait, sizeof wait);
  }
  return socket;
}

/// An address that begins with a zero is an abstract one.
bool connectTo(const std::string& address, int socket) {
  sockaddr_un server{.sun_family = AF_UNIX, .sun_path = {}};
  address.copy(server.sun_path, sizeof server.sun_path - 1);
  const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + address.size());
  return ::connect(socket, reinterpret_cast<const sockaddr*>(&server), length) == 0;
}

XServer faultOf(int error) { return error == EAGAIN ? XServer::silent : XServer::unreachable; }

void greet(int socket) {
  const xcb_setup_request_t greeting{.byte_order = std::endian::native == std::endian::little
                                                       ? std::uint8_t{'l'}
                                                       : std::uint8_t{'B'},
                                     .pad0 = 0,
                                     .protocol_major_version = X_PROTOCOL,
                                     .protocol_minor_version = X_PROTOCOL_REVISION,
                                     .authorization_protocol_name_len = 0,
                                     .authorization_protocol_data_len = 0,
                                     .pad1 = {}};
  // One that has too many clients closes the connection as soon as it has said so.
  (void)::send(socket, &greeting, sizeof greeting, MSG_NOSIGNAL);
}

XServer hear(int socket) {
  char first = 0;
  ssize_t size = 0;
  do {
    size = ::recv(socket, &first, 1, 0);
  } while (size < 0 && errno == EINTR);
  if (size < 0) return faultOf(errno);
  return size == 1 ? XServer::usable : XServer::unreachable;
}

}  // namespace

XServer XServerSurvey::ask(const std::string& display) {
  const auto name = parsed(display);
  if (!name) return XServer::unreachable;
  if (!name->isLocal) return XServer::usable;
  // In the order of the X library.
  const std::string path = std::string(sockets) + std::to_string(name->number);
  const XServer server = askAt(std::string(1, '\0') + path);
  return server == XServer::unreachable ? askAt(path) : server;
}

XServer XServerSurvey::askAt(const std::string& address) {
  FileDescriptor socket = socketWith(limit_);
  if (!connectTo(address, socket.get())) return faultOf(errno);
  greet(socket.get());
  const XServer server = hear(socket.get());
  if (server == XServer::usable) connection_ = std::move(socket);
  return server;
}

}  // namespace lanternfold
