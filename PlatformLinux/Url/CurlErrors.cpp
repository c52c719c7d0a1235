#include "PlatformLinux/Url/CurlErrors.h"

#include <cerrno>
#include <curl/curl.h>

namespace lanternfold {
namespace {

// X509_V_ERR_CERT_NOT_YET_VALID and X509_V_ERR_CERT_HAS_EXPIRED of OpenSSL, which are part of its
// binary interface.
constexpr long certificateNotYetValid = 9;
constexpr long certificateHasExpired = 10;

/// Whatever keeps a request from its proxy says nothing about the host.
bool isFailureOfProxy(const CurlFailure& failure) {
  switch (failure.code) {
    case CURLE_COULDNT_RESOLVE_PROXY:
    case CURLE_PROXY:
      return true;
    case CURLE_COULDNT_CONNECT:
      return failure.usesProxy;
    case CURLE_OPERATION_TIMEDOUT:
      return failure.usesProxy && !failure.isConnected;
    default:
      constexpr long firstRefusal = 300;
      return failure.proxyConnectStatus >= firstRefusal;
  }
}

UrlErrorCode errorOfConnect(const CurlFailure& failure) {
  // libcurl 7.88 also looks for addresses of the other family, and then takes none of them.
  if (!failure.hasTriedToConnect) return UrlErrorCode::cannotFindHost;
  switch (failure.osError) {
    case ETIMEDOUT:
      return UrlErrorCode::timedOut;
    // What was reset had been reached: a host that wants no connection refuses it.
    case ECONNRESET:
    // A program that has run out of something has not learnt that the host is unreachable.
    case EMFILE:
    case ENFILE:
    case ENOBUFS:
    case ENOMEM:
      return UrlErrorCode::networkConnectionLost;
    default:
      return UrlErrorCode::cannotConnectToHost;
  }
}

UrlErrorCode errorOfCertificate(long verifyResult) {
  const bool hasBadDate =
      verifyResult == certificateNotYetValid || verifyResult == certificateHasExpired;
  return hasBadDate ? UrlErrorCode::serverCertificateHasBadDate
                    : UrlErrorCode::serverCertificateUntrusted;
}

}  // namespace

UrlErrorCode urlErrorFrom(const CurlFailure& failure) {
  if (isFailureOfProxy(failure)) return UrlErrorCode::cannotConnectToProxy;
  switch (failure.code) {
    case CURLE_URL_MALFORMAT:
      return UrlErrorCode::badUrl;
    case CURLE_COULDNT_RESOLVE_HOST:
      // libcurl does not look for addresses that the kernel could not use.
      return failure.lacksAddressFamily ? UrlErrorCode::cannotConnectToHost
                                        : UrlErrorCode::cannotFindHost;
    case CURLE_COULDNT_CONNECT:
      return errorOfConnect(failure);
    case CURLE_OPERATION_TIMEDOUT:
      return UrlErrorCode::timedOut;
    case CURLE_PEER_FAILED_VERIFICATION:
      return errorOfCertificate(failure.verifyResult);
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_CERTPROBLEM:
    case CURLE_SSL_CIPHER:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_ENGINE_INITFAILED:
    case CURLE_SSL_ISSUER_ERROR:
    case CURLE_SSL_INVALIDCERTSTATUS:
    case CURLE_SSL_CLIENTCERT:
      return UrlErrorCode::secureConnectionFailed;
    // The scheme has been judged before: these are answers of a protocol that libcurl does not
    // take, such as HTTP/0.9.
    case CURLE_UNSUPPORTED_PROTOCOL:
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_BAD_CONTENT_ENCODING:
      return UrlErrorCode::badServerResponse;
    case CURLE_FILESIZE_EXCEEDED:
    // What libcurl 7.88 calls a header line of more than 100 KiB.
    case CURLE_OUT_OF_MEMORY:
      return UrlErrorCode::dataLengthExceedsMaximum;
    default:
      return UrlErrorCode::networkConnectionLost;
  }
}

}  // namespace lanternfold
