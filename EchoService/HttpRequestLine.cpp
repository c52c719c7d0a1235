#include "EchoService/HttpRequestLine.h"

#include <algorithm>

#include "Support/AsciiCase.h"

namespace lanternfold {
namespace {

using Error = std::unexpected<HttpRequestError>;

bool isDigit(char character) { return character >= '0' && character <= '9'; }

bool isTokenCharacter(char character) {
  const bool isLetter =
      (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
  return isLetter || isDigit(character) || std::string_view("!#$%&'*+-.^_`|~").contains(character);
}

std::expected<HttpVersion, HttpRequestError> parseVersion(std::string_view text) {
  constexpr std::string_view name = "HTTP/";
  const bool isVersion = text.size() == name.size() + 3 && text.starts_with(name) &&
                         isDigit(text[5]) && text[6] == '.' && isDigit(text[7]);
  if (!isVersion) return Error({.sentence = "the request line does not end with an HTTP version"});
  if (text[5] != '1') {
    return Error({.status = 505, .sentence = "this service speaks HTTP/1.0 and HTTP/1.1"});
  }
  return text[7] == '0' ? HttpVersion::http10 : HttpVersion::http11;
}

/// The part of a target that names something on this service; none when the target is no form that
/// a request can have.
std::optional<std::string> pathAndQuery(std::string_view target, std::string_view method) {
  // "HOST:PORT" and "*" belong to methods that the service does not have.
  if (method == "CONNECT" || target == "*") return std::string(target);
  if (target.starts_with('/')) return std::string(target);
  const std::string lowercased = asciiLowercased(target);
  for (const std::string_view scheme : {"http://", "https://"}) {
    if (!lowercased.starts_with(scheme)) continue;
    const std::string_view rest = target.substr(scheme.size());
    const std::size_t hostEnd = rest.find_first_of("/?");
    if (rest.empty() || hostEnd == 0) return std::nullopt;
    if (hostEnd == std::string_view::npos) return "/";
    return (rest[hostEnd] == '?' ? "/" : "") + std::string(rest.substr(hostEnd));
  }
  return std::nullopt;
}

bool isTargetCharacter(char character) {
  return character > ' ' && character < 0x7F && character != '#';
}

}  // namespace

bool isHttpToken(std::string_view text) {
  return !text.empty() && std::ranges::all_of(text, isTokenCharacter);
}

std::expected<HttpRequestLine, HttpRequestError> parseHttpRequestLine(std::string_view line) {
  const std::size_t first = line.find(' ');
  const std::size_t last = line.rfind(' ');
  if (first == last) return Error({.sentence = "the request line has not three parts"});
  const std::string_view method = line.substr(0, first);
  const std::string_view target = line.substr(first + 1, last - first - 1);
  if (!isHttpToken(method)) return Error({.sentence = "the request's method is none"});
  const auto version = parseVersion(line.substr(last + 1));
  if (!version) return Error(version.error());
  if (target.empty() || !std::ranges::all_of(target, isTargetCharacter)) {
    return Error({.sentence = "the request's target holds what no target can hold"});
  }
  const auto path = pathAndQuery(target, method);
  if (!path) return Error({.sentence = "the request's target is neither a path nor an http URL"});
  const std::size_t question = path->find('?');
  HttpRequestLine parsed{
      .method = std::string(method), .path = path->substr(0, question), .version = *version};
  if (question != std::string::npos) parsed.query = path->substr(question + 1);
  return parsed;
}

}  // namespace lanternfold
