#include "NetworkMonitor/PublicInfo/ServiceUrl.h"

#include <algorithm>
#include <glib.h>
#include <memory>
#include <utility>

#include "Support/AsciiCase.h"
#include "Support/FatalError.h"

namespace lanternfold {
namespace {

struct GlibFree {
  void operator()(char* text) const { g_free(text); }
};
using GlibText = std::unique_ptr<char, GlibFree>;

struct Components {
  GlibText scheme;
  GlibText userInformation;
  GlibText host;
  int port = -1;  // none
  GlibText path;
  GlibText query;
  GlibText fragment;
};

/// None for a text that is no URL.
std::unique_ptr<Components> split(const std::string& text) {
  char* scheme = nullptr;
  char* userInformation = nullptr;
  char* host = nullptr;
  char* path = nullptr;
  char* query = nullptr;
  char* fragment = nullptr;
  int port = -1;
  const bool isUrl = g_uri_split(text.c_str(), G_URI_FLAGS_ENCODED, &scheme, &userInformation,
                                 &host, &port, &path, &query, &fragment, nullptr) != FALSE;
  if (!isUrl) return nullptr;
  auto components = std::make_unique<Components>();
  components->scheme.reset(scheme);
  components->userInformation.reset(userInformation);
  components->host.reset(host);
  components->port = port;
  components->path.reset(path);
  components->query.reset(query);
  components->fragment.reset(fragment);
  return components;
}

bool isLetterOrDigit(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

/// The characters that a URL is made of (RFC 3986). What programs read differently, such as a
/// backslash before the host's end, is not among them.
bool isUrlCharacter(char c) {
  constexpr std::string_view marks = "-._~:/?#[]@!$&'()*+,;=%";
  return isLetterOrDigit(c) || marks.find(c) != std::string_view::npos;
}

/// A name, an IPv4 address, or an IPv6 address (of which the brackets have been taken off).
bool isHost(std::string_view host) {
  if (host.empty()) return false;
  if (host.find(':') != std::string_view::npos) return true;
  return std::ranges::all_of(
      host, [](char c) { return isLetterOrDigit(c) || c == '-' || c == '.' || c == '_'; });
}

/// What is wrong, as a sentence; empty for nothing.
std::string_view faultOf(std::string_view text) {
  if (text.size() > ServiceUrl::longestBytes) {
    return "The URL of a service is at most 2048 bytes long.";
  }
  if (!std::ranges::all_of(text, isUrlCharacter)) {
    return "The URL of a service holds a character that no URL holds; write it as % and two "
           "hexadecimal digits.";
  }
  const std::string scheme = asciiLowercased(text.substr(0, text.find(':')));
  if ((scheme != "http" && scheme != "https") || !text.substr(scheme.size()).starts_with("://")) {
    return "The URL of a service begins with http:// or https://.";
  }
  return {};
}

std::string_view faultOf(const Components& components) {
  if (components.userInformation) {
    return "The URL of a service holds no user name and no password.";
  }
  if (!components.host || !isHost(components.host.get())) {
    return "The URL of a service names a host, as in https://host.example.";
  }
  if (components.port == 0) return "The port of a service is a number from 1 to 65535.";
  if (components.fragment) return "The URL of a service has nothing behind a #.";
  return {};
}

}  // namespace

std::expected<ServiceUrl, std::string> ServiceUrl::parse(std::string_view text) {
  if (const auto fault = faultOf(text); !fault.empty()) return std::unexpected(std::string(fault));
  std::string url(text);
  const auto components = split(url);
  if (!components) {
    return std::unexpected(
        "The URL of a service is not written as a URL: its host, its port or a "
        "% in it is wrong.");
  }
  if (const auto fault = faultOf(*components); !fault.empty()) {
    return std::unexpected(std::string(fault));
  }
  const std::string_view path = components->path ? components->path.get() : "";
  if (components->query) return ServiceUrl(std::move(url), Kind::withQuery);
  if (!path.empty() && path != "/") return ServiceUrl(std::move(url), Kind::withPath);
  if (path == "/") url.pop_back();
  return ServiceUrl(std::move(url), Kind::hostAlone);
}

ServiceUrl ServiceUrl::of(std::string_view text) {
  auto url = parse(text);
  if (!url) fatalError("a service's URL of the program's own is none: " + url.error());
  return *std::move(url);
}

std::string ServiceUrl::endpoint(std::string_view path, std::string_view query) const {
  return kind_ == Kind::hostAlone ? endpointTelling(path, query) : text_;
}

std::string ServiceUrl::endpointTelling(std::string_view path, std::string_view query) const {
  std::string url = text_;
  if (kind_ == Kind::hostAlone) url += path;
  if (query.empty()) return url;
  if (kind_ != Kind::withQuery) return url.append(query);
  return url.append("&").append(query.substr(1));
}

}  // namespace lanternfold
