// What a failure of libcurl means to whoever asked for a URL, as one table.
//
// Made from: what libcurl tells of a transfer that ended. Read by: the exchange.
#pragma once

#include "Platform/UrlError.h"

namespace lanternfold {

struct CurlFailure {
  int code = 0;           ///< CURLcode
  int osError = 0;        ///< errno of the call that failed last, 0 when none did
  long verifyResult = 0;  ///< OpenSSL's X509_V_… of the host's certificate
  bool usesProxy = false;
  bool hasTriedToConnect = true;    ///< to an address that was found
  bool isConnected = false;         ///< to the host, or to the proxy when one is used
  long proxyConnectStatus = 0;      ///< what an HTTP proxy said to CONNECT, 0 for nothing
  bool lacksAddressFamily = false;  ///< the kernel has no sockets of the wanted family
};

/// Any thread; pure.
[[nodiscard]] UrlErrorCode urlErrorFrom(const CurlFailure& failure);

}  // namespace lanternfold
