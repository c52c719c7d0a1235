// What each failure of libcurl means to whoever asked for a URL.
#include <cerrno>
#include <curl/curl.h>

#include "PlatformLinux/Url/CurlErrors.h"

namespace lanternfold {
namespace {

using enum UrlErrorCode;

TEST(CurlErrorsTest, EveryFailureHasItsCode) {
  const std::vector<std::pair<CURLcode, UrlErrorCode>> table{
      {CURLE_URL_MALFORMAT, badUrl},
      {CURLE_COULDNT_RESOLVE_HOST, cannotFindHost},
      {CURLE_COULDNT_RESOLVE_PROXY, cannotConnectToProxy},
      {CURLE_COULDNT_CONNECT, cannotConnectToHost},
      {CURLE_OPERATION_TIMEDOUT, timedOut},
      {CURLE_UNSUPPORTED_PROTOCOL, badServerResponse},
      {CURLE_WEIRD_SERVER_REPLY, badServerResponse},
      {CURLE_BAD_CONTENT_ENCODING, badServerResponse},
      {CURLE_FILESIZE_EXCEEDED, dataLengthExceedsMaximum},
      {CURLE_OUT_OF_MEMORY, dataLengthExceedsMaximum},
      {CURLE_SSL_CONNECT_ERROR, secureConnectionFailed},
      {CURLE_SSL_CIPHER, secureConnectionFailed},
      {CURLE_SSL_CACERT_BADFILE, secureConnectionFailed},
      {CURLE_SSL_CLIENTCERT, secureConnectionFailed},
      {CURLE_PEER_FAILED_VERIFICATION, serverCertificateUntrusted},
      {CURLE_PROXY, cannotConnectToProxy},
      {CURLE_GOT_NOTHING, networkConnectionLost},
      {CURLE_PARTIAL_FILE, networkConnectionLost},
      {CURLE_RECV_ERROR, networkConnectionLost},
      {CURLE_SEND_ERROR, networkConnectionLost},
      {CURLE_HTTP2, networkConnectionLost},
  };
  for (const auto& [code, expected] : table) {
    EXPECT_EQ(urlErrorFrom({.code = code}), expected) << curl_easy_strerror(code);
  }
}

TEST(CurlErrorsTest, ARefusedUnreachableOrMissingRouteCannotConnect) {
  for (const int error :
       {ECONNREFUSED, EHOSTUNREACH, ENETUNREACH, EACCES, EADDRNOTAVAIL, EAFNOSUPPORT, 0}) {
    EXPECT_EQ(urlErrorFrom({.code = CURLE_COULDNT_CONNECT, .osError = error}), cannotConnectToHost)
        << error;
  }
}

TEST(CurlErrorsTest, TheKernelsOwnTimeOutIsOne) {
  EXPECT_EQ(urlErrorFrom({.code = CURLE_COULDNT_CONNECT, .osError = ETIMEDOUT}), timedOut);
}

TEST(CurlErrorsTest, AConnectionThatIsResetAtOnceIsLost) {
  EXPECT_EQ(urlErrorFrom({.code = CURLE_COULDNT_CONNECT, .osError = ECONNRESET}),
            networkConnectionLost);
}

TEST(CurlErrorsTest, AProgramThatRanOutOfSomethingDoesNotBlameTheHost) {
  for (const int error : {EMFILE, ENFILE, ENOBUFS, ENOMEM}) {
    EXPECT_EQ(urlErrorFrom({.code = CURLE_COULDNT_CONNECT, .osError = error}),
              networkConnectionLost)
        << error;
  }
}

TEST(CurlErrorsTest, WithoutAnAddressToTryTheHostCannotBeFound) {
  EXPECT_EQ(urlErrorFrom({.code = CURLE_COULDNT_CONNECT, .hasTriedToConnect = false}),
            cannotFindHost);
}

TEST(CurlErrorsTest, AKernelWithoutTheFamilyCannotConnect) {
  EXPECT_EQ(urlErrorFrom({.code = CURLE_COULDNT_RESOLVE_HOST, .lacksAddressFamily = true}),
            cannotConnectToHost);
}

TEST(CurlErrorsTest, AProxyThatCannotBeReachedIsNeverTheHost) {
  for (const int error : {ECONNREFUSED, EHOSTUNREACH, ENETUNREACH, ETIMEDOUT, EAFNOSUPPORT, 0}) {
    for (const bool hasTried : {true, false}) {
      EXPECT_EQ(urlErrorFrom({.code = CURLE_COULDNT_CONNECT,
                              .osError = error,
                              .usesProxy = true,
                              .hasTriedToConnect = hasTried}),
                cannotConnectToProxy)
          << error;
    }
  }
}

TEST(CurlErrorsTest, ASilentProxyIsToldFromASilentHost) {
  CurlFailure failure{.code = CURLE_OPERATION_TIMEDOUT, .usesProxy = true};
  EXPECT_EQ(urlErrorFrom(failure), cannotConnectToProxy);
  failure.isConnected = true;
  EXPECT_EQ(urlErrorFrom(failure), timedOut);
}

TEST(CurlErrorsTest, AProxyThatRefusesToConnectIsNotTheHost) {
  for (const CURLcode code : {CURLE_RECV_ERROR, CURLE_COULDNT_CONNECT, CURLE_GOT_NOTHING}) {
    EXPECT_EQ(urlErrorFrom({.code = code, .usesProxy = true, .proxyConnectStatus = 503}),
              cannotConnectToProxy);
  }
  EXPECT_EQ(urlErrorFrom({.code = CURLE_RECV_ERROR, .usesProxy = true, .proxyConnectStatus = 200}),
            networkConnectionLost);
}

TEST(CurlErrorsTest, ACertificatesDateIsToldFromItsIssuer) {
  const auto errorOf = [](long verifyResult) {
    return urlErrorFrom({.code = CURLE_PEER_FAILED_VERIFICATION, .verifyResult = verifyResult});
  };
  EXPECT_EQ(errorOf(9), serverCertificateHasBadDate) << "not yet valid";
  EXPECT_EQ(errorOf(10), serverCertificateHasBadDate) << "expired";
  EXPECT_EQ(errorOf(18), serverCertificateUntrusted) << "self-signed";
  EXPECT_EQ(errorOf(20), serverCertificateUntrusted) << "of an unknown issuer";
  EXPECT_EQ(errorOf(0), serverCertificateUntrusted) << "of another host";
}

}  // namespace
}  // namespace lanternfold
