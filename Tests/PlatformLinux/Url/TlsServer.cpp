#include "Tests/PlatformLinux/Url/TlsServer.h"

#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <netinet/in.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

#include "PlatformLinux/System/FileDescriptor.h"

namespace lanternfold::test {
namespace {

/// Quietly, and without the configuration of the machine.
pid_t start(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "openssl");
  std::vector<char*> pointers;
  for (std::string& each : arguments) pointers.push_back(each.data());
  pointers.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    posix_spawn_file_actions_addopen(&actions, descriptor, "/dev/null", O_RDWR, 0);
  }
  pid_t process = 0;
  EXPECT_EQ(posix_spawnp(&process, "openssl", &actions, nullptr, pointers.data(), environ), 0);
  posix_spawn_file_actions_destroy(&actions);
  return process;
}

int statusOf(pid_t process) {
  int status = 0;
  while (waitpid(process, &status, 0) < 0) {
    if (errno != EINTR) return -1;
  }
  return status;
}

}  // namespace

bool openssl(const std::vector<std::string>& arguments) { return statusOf(start(arguments)) == 0; }

Certificate::Certificate(int days) {
  const std::string request = folder_ / "request.pem";
  EXPECT_TRUE(openssl({"req", "-new", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1",
                       "-nodes", "-keyout", keyFile(), "-out", request, "-subj", "/CN=localhost",
                       "-addext", "subjectAltName=DNS:localhost"}));
  EXPECT_TRUE(openssl({"x509", "-req", "-in", request, "-signkey", keyFile(), "-days",
                       std::to_string(days), "-copy_extensions", "copy", "-out", file()}));
}

TlsServer::TlsServer(const Certificate& certificate, const std::vector<std::string>& options) {
  std::vector<std::string> arguments{"s_server",
                                     "-accept",
                                     "127.0.0.1:" + std::to_string(port),
                                     "-cert",
                                     certificate.file(),
                                     "-key",
                                     certificate.keyFile(),
                                     "-www"};
  arguments.insert(arguments.end(), options.begin(), options.end());
  process_ = start(arguments);
  for (int tries = 0; tries < 1000 && !isListening(); ++tries) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  EXPECT_TRUE(isListening());
}

TlsServer::~TlsServer() {
  kill(process_, SIGKILL);
  statusOf(process_);
}

std::string TlsServer::url(const std::string& host) const {
  return "https://" + host + ":" + std::to_string(port) + "/";
}

bool TlsServer::isListening() const {
  const FileDescriptor probe(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_in name{};
  name.sin_family = AF_INET;
  name.sin_port = htons(port);
  name.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return connect(probe.get(), reinterpret_cast<const sockaddr*>(&name), sizeof name) == 0;
}

}  // namespace lanternfold::test
