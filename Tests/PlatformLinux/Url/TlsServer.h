// A TLS server of a test's own, and certificates for it: the openssl program does both.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <sys/types.h>
#include <vector>

#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold::test {

/// Runs openssl with these arguments; whether it ended with status 0.
[[nodiscard]] bool openssl(const std::vector<std::string>& arguments);

/// A key and a certificate for "localhost" that vouches for itself.
class Certificate {
 public:
  /// One of -1 days has expired.
  explicit Certificate(int days);

  [[nodiscard]] std::string file() const { return folder_ / "certificate.pem"; }
  [[nodiscard]] std::string keyFile() const { return folder_ / "key.pem"; }
  [[nodiscard]] std::string text() const { return folder_.bytesOf("certificate.pem"); }

 private:
  TemporaryFolder folder_;
};

/// Answers every request over HTTP with a page that begins with "<HTML>".
class TlsServer {
 public:
  explicit TlsServer(const Certificate& certificate, const std::vector<std::string>& options = {});
  ~TlsServer();
  TlsServer(const TlsServer&) = delete;
  TlsServer& operator=(const TlsServer&) = delete;

  [[nodiscard]] std::string url(const std::string& host = "localhost") const;

 private:
  [[nodiscard]] bool isListening() const;

  static constexpr std::uint16_t port = 4433;
  pid_t process_ = 0;
};

}  // namespace lanternfold::test
