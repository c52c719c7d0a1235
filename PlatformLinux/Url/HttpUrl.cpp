#include "PlatformLinux/Url/HttpUrl.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <charconv>
#include <curl/curl.h>
#include <memory>
#include <optional>

namespace lanternfold {
namespace {

struct UrlCloser {
  void operator()(CURLU* url) const { curl_url_cleanup(url); }
};
using UrlHandle = std::unique_ptr<CURLU, UrlCloser>;

std::optional<std::string> partOf(CURLU* url, CURLUPart part, unsigned flags = 0) {
  char* text = nullptr;
  if (curl_url_get(url, part, &text, flags) != CURLUE_OK) return std::nullopt;
  const std::unique_ptr<char, void (*)(void*)> owner(text, curl_free);
  return std::string(text);
}

constexpr bool isLetter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

constexpr bool belongsInScheme(char character) {
  return isLetter(character) || (character >= '0' && character <= '9') || character == '+' ||
         character == '-' || character == '.';
}

/// In lower case; empty when the text does not begin with one.
std::string schemeOf(std::string_view text) {
  const auto end = std::ranges::find_if_not(text, belongsInScheme);
  if (end == text.end() || *end != ':' || !isLetter(text.front())) return {};
  std::string scheme(text.begin(), end);
  for (char& each : scheme) {
    if (each >= 'A' && each <= 'Z') each = static_cast<char>(each - 'A' + 'a');
  }
  return scheme;
}

/// libcurl reads "http:/name/" and "http:///name/" as "http://name/", which would take a piece of
/// the path for the host.
bool namesAnAuthority(std::string_view behindScheme) {
  return behindScheme.size() > 2 && behindScheme.starts_with("//") &&
         std::string_view("/?#").find(behindScheme[2]) == std::string_view::npos;
}

UrlAddressFamily literalFamilyOf(const std::string& host) {
  std::array<unsigned char, sizeof(in6_addr)> bytes{};
  if (inet_pton(AF_INET, host.c_str(), bytes.data()) == 1) return UrlAddressFamily::ipv4;
  if (inet_pton(AF_INET6, host.c_str(), bytes.data()) == 1) return UrlAddressFamily::ipv6;
  return UrlAddressFamily::any;
}

std::string withoutBrackets(std::string host) {
  if (host.size() > 2 && host.starts_with('[') && host.ends_with(']')) {
    return host.substr(1, host.size() - 2);
  }
  return host;
}

}  // namespace

std::expected<HttpUrl, UrlErrorCode> parseHttpUrl(std::string_view text,
                                                  UrlCredentials credentials) {
  const auto bad = std::unexpected(UrlErrorCode::badUrl);
  if (text.empty() || text.size() > longestUrlBytes || text.contains('\0')) return bad;
  const std::string scheme = schemeOf(text);
  if (scheme.empty()) return bad;
  if (scheme != "http" && scheme != "https") return std::unexpected(UrlErrorCode::unsupportedUrl);
  if (!namesAnAuthority(text.substr(scheme.size() + 1))) return bad;

  const UrlHandle url(curl_url());
  if (curl_url_set(url.get(), CURLUPART_URL, std::string(text).c_str(), 0) != CURLUE_OK) return bad;
  if (credentials == UrlCredentials::dropped) {
    curl_url_set(url.get(), CURLUPART_USER, nullptr, 0);
    curl_url_set(url.get(), CURLUPART_PASSWORD, nullptr, 0);
  }
  const auto host = partOf(url.get(), CURLUPART_HOST);
  const auto port = partOf(url.get(), CURLUPART_PORT, CURLU_DEFAULT_PORT);
  auto normalised = partOf(url.get(), CURLUPART_URL);
  if (!host || host->empty() || !port || !normalised) return bad;

  HttpUrl result{.text = std::move(*normalised),
                 .isSecure = scheme == "https",
                 .host = withoutBrackets(*host)};
  result.literalFamily = literalFamilyOf(result.host);
  if (std::from_chars(port->data(), port->data() + port->size(), result.port).ec != std::errc()) {
    return bad;
  }
  return result;
}

}  // namespace lanternfold
