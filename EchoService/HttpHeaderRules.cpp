#include "EchoService/HttpHeaderRules.h"

#include <algorithm>

#include "Support/AsciiCase.h"

namespace lanternfold {
namespace {

using Error = std::unexpected<HttpRequestError>;

std::string_view withoutWhiteSpaceAround(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

bool isFieldCharacter(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte == '\t' || (byte >= ' ' && byte != 0x7F);
}

bool isDigits(std::string_view text) {
  return !text.empty() && std::ranges::all_of(text, [](char character) {
    return character >= '0' && character <= '9';
  });
}

/// A name or an address, perhaps with a port; the empty one is that of a URL without a host.
bool isHost(std::string_view text) {
  return std::ranges::all_of(text, [](char character) {
    return isHttpToken({&character, 1}) || std::string_view(":[]()=;").contains(character);
  });
}

std::vector<std::string_view> valuesOf(std::span<const HttpHeaderField> fields,
                                       std::string_view name) {
  std::vector<std::string_view> values;
  for (const HttpHeaderField& field : fields) {
    if (field.name == name) values.push_back(field.value);
  }
  return values;
}

bool listHolds(std::span<const HttpHeaderField> fields, std::string_view name,
               std::string_view lowercaseItem) {
  return std::ranges::any_of(httpListItems(fields, name), [&](std::string_view item) {
    return asciiLowercased(item) == lowercaseItem;
  });
}

std::expected<void, HttpRequestError> checkHost(std::span<const HttpHeaderField> fields,
                                                HttpVersion version) {
  const auto hosts = valuesOf(fields, "host");
  if (hosts.empty() && version == HttpVersion::http11) {
    return Error({.sentence = "the request names no host"});
  }
  if (hosts.size() > 1) return Error({.sentence = "the request names a host twice"});
  if (!hosts.empty() && !isHost(hosts.front())) {
    return Error({.sentence = "the request's host is none"});
  }
  return {};
}

/// A body could hide a second request from whoever does not see it end, so none is taken.
std::expected<void, HttpRequestError> checkBody(std::span<const HttpHeaderField> fields) {
  const auto codings = valuesOf(fields, "transfer-encoding");
  const auto lengths = valuesOf(fields, "content-length");
  if (!codings.empty() && !lengths.empty()) {
    return Error({.sentence = "the request's body has both a length and a transfer coding"});
  }
  if (codings.size() == 1 && asciiLowercased(codings.front()) == "chunked") {
    return Error({.status = 411, .sentence = "this service takes no body in chunks"});
  }
  if (!codings.empty()) {
    return Error({.status = 501, .sentence = "this service knows no transfer coding"});
  }
  if (lengths.size() > 1 || (lengths.size() == 1 && !isDigits(lengths.front()))) {
    return Error({.sentence = "the length of the request's body is not one number"});
  }
  if (lengths.size() == 1 && lengths.front().find_first_not_of('0') != std::string_view::npos) {
    return Error({.status = 413, .sentence = "this service takes no request with a body"});
  }
  return {};
}

std::expected<void, HttpRequestError> checkExpectation(std::span<const HttpHeaderField> fields) {
  const auto expectations = valuesOf(fields, "expect");
  const bool known = std::ranges::all_of(expectations, [](std::string_view expectation) {
    return asciiLowercased(expectation) == "100-continue";
  });
  // Whoever waits for a "continue" has a body, which is an error already, or none to send.
  if (known) return {};
  return Error({.status = 417, .sentence = "this service cannot meet what the request expects"});
}

}  // namespace

std::expected<HttpHeaderField, HttpRequestError> parseHttpHeaderField(std::string_view line) {
  if (line.starts_with(' ') || line.starts_with('\t')) {
    return Error({.sentence = "a header field is folded over two lines"});
  }
  const std::size_t colon = line.find(':');
  if (colon == std::string_view::npos) {
    return Error({.sentence = "a line of the header has no colon"});
  }
  const std::string_view name = line.substr(0, colon);
  const std::string_view value = withoutWhiteSpaceAround(line.substr(colon + 1));
  if (!isHttpToken(name)) return Error({.sentence = "the name of a header field is none"});
  if (!std::ranges::all_of(value, isFieldCharacter)) {
    return Error({.sentence = "a header field holds a control character"});
  }
  return HttpHeaderField{.name = asciiLowercased(name), .value = std::string(value)};
}

std::expected<void, HttpRequestError> checkHttpHeader(std::span<const HttpHeaderField> fields,
                                                      HttpVersion version) {
  if (auto checked = checkHost(fields, version); !checked) return checked;
  if (auto checked = checkBody(fields); !checked) return checked;
  return checkExpectation(fields);
}

bool wantsKeepAlive(std::span<const HttpHeaderField> fields, HttpVersion version) {
  if (listHolds(fields, "connection", "close")) return false;
  return version == HttpVersion::http11 || listHolds(fields, "connection", "keep-alive");
}

std::vector<std::string_view> httpListItems(std::span<const HttpHeaderField> fields,
                                            std::string_view name) {
  std::vector<std::string_view> items;
  for (const std::string_view value : valuesOf(fields, name)) {
    for (std::size_t start = 0; start <= value.size();) {
      const std::size_t end = std::min(value.find(',', start), value.size());
      items.push_back(withoutWhiteSpaceAround(value.substr(start, end - start)));
      start = end + 1;
    }
  }
  return items;
}

}  // namespace lanternfold
