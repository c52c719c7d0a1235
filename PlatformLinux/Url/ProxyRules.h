// Which proxy a request goes through, from the variables that people set for it.
//
// The rules are those of the curl command: `http_proxy` in lower case only, because a web server's
// gateway hands a client's "Proxy:" header on as HTTP_PROXY; the others in either case, lower case
// first.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "PlatformLinux/Url/HttpUrl.h"

namespace lanternfold {

struct ProxyEnvironment {
  std::string httpProxy = {};   ///< for http; empty for none, as are all
  std::string httpsProxy = {};  ///< for https
  std::string allProxy = {};    ///< for what has none of its own
  std::string noProxy = {};     ///< hosts that are reached without one, or "*"
  friend bool operator==(const ProxyEnvironment&, const ProxyEnvironment&) = default;
};

using EnvironmentVariable = std::function<std::optional<std::string>(const char* name)>;

[[nodiscard]] ProxyEnvironment proxyEnvironmentFrom(const EnvironmentVariable& variable);

/// Of the process. Belongs at the start of a program, before it has threads.
[[nodiscard]] ProxyEnvironment proxyEnvironmentOfProcess();

/// The proxy for this URL as it was given, "host:port" with or without a scheme; empty for a direct
/// connection. Pure.
[[nodiscard]] std::string proxyFor(const ProxyEnvironment& environment, const HttpUrl& url);

}  // namespace lanternfold
