// The error domain of URL loading: what a data task's error says.
//
// Made by: the URL sessions. Read by: the public-info resolvers, and whoever tells the user.
#pragma once

#include <string>
#include <system_error>

namespace lanternfold {

enum class UrlErrorCode {
  cancelled = -999,
  badUrl = -1000,               ///< it is no URL, or names no host
  timedOut = -1001,             ///< the longest silence or the whole exchange took too long
  unsupportedUrl = -1002,       ///< another scheme than http and https, also after a redirect
  cannotFindHost = -1003,       ///< the name has no address of the wanted family
  cannotConnectToHost = -1004,  ///< refused, unreachable, no route
  networkConnectionLost = -1005,
  tooManyRedirects = -1007,
  badServerResponse = -1011,         ///< what came is no HTTP
  dataLengthExceedsMaximum = -1103,  ///< the answer is longer than a session takes
  secureConnectionFailed = -1200,    ///< TLS, other than the certificate
  serverCertificateHasBadDate = -1201,
  serverCertificateUntrusted = -1202,  ///< of an unknown issuer, or of another host
  /// A proxy that is named by the environment cannot be found or reached, or refuses. Apart from
  /// `cannotConnectToHost`, which may mean a machine without IPv6.
  cannotConnectToProxy = -1300,
};

/// Its codes compare equal to nothing of another domain.
[[nodiscard]] inline const std::error_category& urlErrorDomain() {
  class Domain final : public std::error_category {
   public:
    [[nodiscard]] const char* name() const noexcept override { return "URL"; }
    [[nodiscard]] std::string message(int code) const override {
      switch (static_cast<UrlErrorCode>(code)) {
        case UrlErrorCode::cancelled:
          return "the request was cancelled";
        case UrlErrorCode::badUrl:
          return "the URL is not one";
        case UrlErrorCode::timedOut:
          return "the request timed out";
        case UrlErrorCode::unsupportedUrl:
          return "only http and https URLs can be fetched";
        case UrlErrorCode::cannotFindHost:
          return "the host cannot be found";
        case UrlErrorCode::cannotConnectToHost:
          return "the host cannot be reached";
        case UrlErrorCode::networkConnectionLost:
          return "the connection was lost";
        case UrlErrorCode::tooManyRedirects:
          return "there were too many redirects";
        case UrlErrorCode::badServerResponse:
          return "the answer is not one of HTTP";
        case UrlErrorCode::dataLengthExceedsMaximum:
          return "the answer is too long";
        case UrlErrorCode::secureConnectionFailed:
          return "the secure connection failed";
        case UrlErrorCode::serverCertificateHasBadDate:
          return "the host's certificate has expired or is not valid yet";
        case UrlErrorCode::serverCertificateUntrusted:
          return "the host's certificate is not trusted";
        case UrlErrorCode::cannotConnectToProxy:
          return "the proxy cannot be reached, or refuses";
      }
      return "URL error " + std::to_string(code);
    }
  };
  static const Domain domain;
  return domain;
}

[[nodiscard]] inline std::error_code make_error_code(UrlErrorCode code) {
  return {static_cast<int>(code), urlErrorDomain()};
}

}  // namespace lanternfold

template <>
struct std::is_error_code_enum<lanternfold::UrlErrorCode> : std::true_type {};
