#include "PlatformLinux/Url/ProxyRules.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <charconv>
#include <cstdlib>
#include <string_view>

namespace lanternfold {
namespace {

constexpr std::size_t bitsOfByte = 8;

bool isSameIgnoringCase(std::string_view one, std::string_view other) {
  const auto lower = [](char each) {
    return each >= 'A' && each <= 'Z' ? static_cast<char>(each - 'A' + 'a') : each;
  };
  return std::ranges::equal(one, other, {}, lower, lower);
}

std::string_view withoutTrailingDot(std::string_view name) {
  return name.ends_with('.') ? name.substr(0, name.size() - 1) : name;
}

/// "example.com" and ".example.com" both mean the name and everything below it.
bool coversName(std::string_view entry, std::string_view host) {
  entry = withoutTrailingDot(entry);
  host = withoutTrailingDot(host);
  if (entry.starts_with('.')) entry.remove_prefix(1);
  if (entry.empty() || entry.size() > host.size()) return false;
  if (!isSameIgnoringCase(entry, host.substr(host.size() - entry.size()))) return false;
  return entry.size() == host.size() || host[host.size() - entry.size() - 1] == '.';
}

struct AddressBytes {
  std::array<unsigned char, sizeof(in6_addr)> bytes{};
  std::size_t count = 0;
};

std::optional<AddressBytes> addressFrom(const std::string& text, UrlAddressFamily family) {
  AddressBytes address;
  const bool isIPv4 = family == UrlAddressFamily::ipv4;
  address.count = isIPv4 ? sizeof(in_addr) : sizeof(in6_addr);
  if (inet_pton(isIPv4 ? AF_INET : AF_INET6, text.c_str(), address.bytes.data()) != 1) {
    return std::nullopt;
  }
  return address;
}

bool sharesPrefix(const AddressBytes& one, const AddressBytes& other, std::size_t bits) {
  for (std::size_t bit = 0; bit < bits; ++bit) {
    const auto mask = static_cast<unsigned char>(0x80U >> (bit % bitsOfByte));
    const std::size_t index = bit / bitsOfByte;
    if ((one.bytes[index] & mask) != (other.bytes[index] & mask)) return false;
  }
  return true;
}

/// An address, or a prefix such as "192.0.2.0/24".
bool coversAddress(std::string_view entry, const std::string& host, UrlAddressFamily family) {
  const auto slash = entry.find('/');
  const auto wanted = addressFrom(std::string(entry.substr(0, slash)), family);
  const auto given = addressFrom(host, family);
  if (!wanted || !given) return false;
  std::size_t bits = given->count * bitsOfByte;
  if (slash != std::string_view::npos) {
    const std::string_view text = entry.substr(slash + 1);
    std::size_t prefix = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), prefix);
    if (error != std::errc() || end != text.data() + text.size() || prefix > bits) return false;
    bits = prefix;
  }
  return sharesPrefix(*wanted, *given, bits);
}

bool goesDirectly(std::string_view noProxy, const HttpUrl& url) {
  if (noProxy == "*") return true;
  constexpr std::string_view separators = ", \t";
  while (!noProxy.empty()) {
    const std::string_view entry = noProxy.substr(0, noProxy.find_first_of(separators));
    noProxy.remove_prefix(std::min(noProxy.size(), entry.size() + 1));
    const bool isCovered = url.literalFamily == UrlAddressFamily::any
                               ? coversName(entry, url.host)
                               : coversAddress(entry, url.host, url.literalFamily);
    if (isCovered) return true;
  }
  return false;
}

}  // namespace

ProxyEnvironment proxyEnvironmentFrom(const EnvironmentVariable& variable) {
  const auto either = [&variable](const char* lower, const char* upper) {
    // One that is empty counts as not set.
    auto value = variable(lower).value_or("");
    return value.empty() ? variable(upper).value_or("") : value;
  };
  return {.httpProxy = variable("http_proxy").value_or(""),
          .httpsProxy = either("https_proxy", "HTTPS_PROXY"),
          .allProxy = either("all_proxy", "ALL_PROXY"),
          .noProxy = either("no_proxy", "NO_PROXY")};
}

ProxyEnvironment proxyEnvironmentOfProcess() {
  return proxyEnvironmentFrom([](const char* name) -> std::optional<std::string> {
    const char* value = std::getenv(name);
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
  });
}

std::string proxyFor(const ProxyEnvironment& environment, const HttpUrl& url) {
  const std::string& own = url.isSecure ? environment.httpsProxy : environment.httpProxy;
  const std::string& proxy = own.empty() ? environment.allProxy : own;
  if (proxy.empty() || goesDirectly(environment.noProxy, url)) return {};
  return proxy;
}

}  // namespace lanternfold
