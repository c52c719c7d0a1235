// Any bytes through the request parser: what it takes is a request without a trace of another one,
// and what it says of them does not depend on how they are cut.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "EchoService/EchoResponder.h"
#include "EchoService/HttpRequestParser.h"
#include "Support/FatalError.h"

namespace {

using namespace lanternfold;

void requireNoControlCharacters(std::string_view text, bool spacesToo) {
  const bool clean = std::ranges::all_of(text, [spacesToo](char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte != 0x7F && (byte > ' ' || (!spacesToo && (byte == ' ' || byte == '\t')));
  });
  if (!clean) fatalError("a request holds a control character");
}

void requireWhole(const ParsedHttpRequest& parsed, std::string_view bytes) {
  const HttpRequest& request = parsed.request;
  if (parsed.consumedBytes == 0 || parsed.consumedBytes > bytes.size() ||
      parsed.consumedBytes > longestHttpRequestBytes) {
    fatalError("a request has another size than its bytes");
  }
  if (request.method.empty() || request.path.empty() ||
      request.fields.size() > mostHttpHeaderFields) {
    fatalError("a request lacks a part or has too many fields");
  }
  requireNoControlCharacters(request.method, true);
  requireNoControlCharacters(request.path, true);
  requireNoControlCharacters(request.query.value_or(""), true);
  for (const HttpHeaderField& field : request.fields) {
    requireNoControlCharacters(field.name, true);
    requireNoControlCharacters(field.value, false);
  }
  const auto again = parseHttpRequest(bytes.substr(0, parsed.consumedBytes));
  if (!again || !*again || (*again)->request != request) {
    fatalError("a request depends on what follows it");
  }
  const auto shorter = parseHttpRequest(bytes.substr(0, parsed.consumedBytes - 1));
  if (!shorter || *shorter) fatalError("a request was whole before its last byte");
}

void requireAnswer(const HttpRequest& request) {
  static const EchoResponder responder({}, {{.base = IPv4Bytes{}, .prefixLength = 0}});
  const HttpResponse response = responder.respond(request, IPv4Bytes{192, 0, 2, 1});
  constexpr std::array known{200, 400, 404, 405};
  if (std::ranges::find(known, response.status) == known.end() || response.body.empty()) {
    fatalError("a request has no answer");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view rest(reinterpret_cast<const char*>(data), size);
  while (true) {
    const auto parsed = parseHttpRequest(rest);
    if (!parsed) {
      if (parsed.error().status < 400 || parsed.error().status > 505) {
        fatalError("an error has a status that is none");
      }
      return 0;
    }
    if (!*parsed) {
      if (rest.size() >= longestHttpRequestBytes) fatalError("a request is never refused");
      return 0;
    }
    requireWhole(**parsed, rest);
    requireAnswer((*parsed)->request);
    rest.remove_prefix((*parsed)->consumedBytes);
  }
}
