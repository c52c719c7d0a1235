#include "NetworkMonitor/PublicInfo/ServiceUrl.h"

#include <algorithm>
#include <glib.h>
#include <memory>
#include <utility>

#include "Support/AsciiCase.h"
#include "Support/FatalError.h"

namespace lanternfold {
namespace {

struct UriRelease {
  void operator()(GUri* uri) const { g_uri_unref(uri); }
};
using Uri = std::unique_ptr<GUri, UriRelease>;

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

/// What is wrong, as a clause; empty for nothing.
std::string_view faultOf(std::string_view text) {
  if (text.size() > ServiceUrl::longestBytes) {
    return "the URL of a service is at most 2048 bytes long";
  }
  if (!std::ranges::all_of(text, isUrlCharacter)) {
    return "the URL of a service holds a character that no URL holds; write it as % and two "
           "hexadecimal digits";
  }
  const std::string scheme = asciiLowercased(text.substr(0, text.find(':')));
  if ((scheme != "http" && scheme != "https") || !text.substr(scheme.size()).starts_with("://")) {
    return "the URL of a service begins with http:// or https://";
  }
  // Programs disagree on whether an escape in a host stands for the character.
  const std::string_view authority = text.substr(scheme.size() + 3);
  if (authority.substr(0, authority.find_first_of("/?#")).contains('%')) {
    return "the URL of a service has no % in its host";
  }
  return {};
}

std::string_view faultOf(GUri& uri) {
  if (g_uri_get_userinfo(&uri) != nullptr) {
    return "the URL of a service holds no user name and no password";
  }
  const char* const host = g_uri_get_host(&uri);
  if (host == nullptr || !isHost(host)) {
    return "the URL of a service names a host, as in https://host.example";
  }
  if (g_uri_get_port(&uri) == 0) return "the port of a service is a number from 1 to 65535";
  if (g_uri_get_fragment(&uri) != nullptr) return "the URL of a service has nothing behind a #";
  return {};
}

}  // namespace

std::expected<ServiceUrl, std::string> ServiceUrl::parse(std::string_view text) {
  if (const auto fault = faultOf(text); !fault.empty()) return std::unexpected(std::string(fault));
  std::string url(text);
  const Uri uri(g_uri_parse(url.c_str(), G_URI_FLAGS_ENCODED, nullptr));
  if (!uri) {
    return std::unexpected(
        "the URL of a service is not written as a URL: its host, its port or a "
        "% in it is wrong");
  }
  if (const auto fault = faultOf(*uri); !fault.empty()) return std::unexpected(std::string(fault));
  const std::string_view path = g_uri_get_path(uri.get());
  if (g_uri_get_query(uri.get()) != nullptr) return ServiceUrl(std::move(url), Kind::withQuery);
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
