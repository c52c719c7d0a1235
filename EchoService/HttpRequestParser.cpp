#include "EchoService/HttpRequestParser.h"

#include <utility>

#include "EchoService/HttpHeaderRules.h"
#include "EchoService/HttpRequestLine.h"

namespace lanternfold {
namespace {

using Error = std::unexpected<HttpRequestError>;

/// Takes whole lines off the front of the bytes.
class LineReader {
 public:
  explicit LineReader(std::string_view bytes) : bytes_(bytes) {}

  /// Without its end; none when the end has not come yet. A line ends with CR and LF and with
  /// nothing else.
  std::expected<std::optional<std::string_view>, HttpRequestError> next() {
    using namespace std::string_view_literals;
    const std::string_view rest = bytes_.substr(position_);
    const std::size_t end = rest.find_first_of("\r\n\0"sv);
    if (end == std::string_view::npos) return std::nullopt;
    if (rest[end] != '\r') {
      return Error({.sentence = "a line of the request ends with something else than CR and LF"});
    }
    if (end + 1 == rest.size()) return std::nullopt;
    if (rest[end + 1] != '\n') {
      return Error({.sentence = "the request holds a CR without LF"});
    }
    position_ += end + 2;
    return rest.substr(0, end);
  }

  [[nodiscard]] std::size_t position() const { return position_; }
  [[nodiscard]] std::size_t remaining() const { return bytes_.size() - position_; }

 private:
  std::string_view bytes_;
  std::size_t position_ = 0;
};

constexpr HttpRequestError lineTooLong{.status = 414, .sentence = "the request line is too long"};
constexpr HttpRequestError headerTooLong{.status = 431, .sentence = "the header is too long"};

/// The request line; none while it is not whole.
std::expected<std::optional<HttpRequestLine>, HttpRequestError> readRequestLine(
    LineReader& reader) {
  auto line = reader.next();
  // Clients exist that send an empty line behind the request before.
  if (line && *line && (*line)->empty()) line = reader.next();
  if (!line) return Error(line.error());
  if (!*line) {
    // One more byte may be the CR of a line that is as long as it may be.
    if (reader.remaining() > longestHttpRequestLineBytes + 1) return Error(lineTooLong);
    return std::nullopt;
  }
  if ((*line)->size() > longestHttpRequestLineBytes) return Error(lineTooLong);
  auto parsed = parseHttpRequestLine(**line);
  if (!parsed) return Error(parsed.error());
  return *std::move(parsed);
}

/// The fields up to the empty line; none while that has not come.
std::expected<std::optional<std::vector<HttpHeaderField>>, HttpRequestError> readFields(
    LineReader& reader) {
  std::vector<HttpHeaderField> fields;
  while (true) {
    const auto line = reader.next();
    if (!line) return Error(line.error());
    if (!*line) return std::nullopt;
    if ((*line)->empty()) return fields;
    if (fields.size() == mostHttpHeaderFields) {
      return Error({.status = 431, .sentence = "the header has too many fields"});
    }
    auto field = parseHttpHeaderField(**line);
    if (!field) return Error(field.error());
    fields.push_back(*std::move(field));
  }
}

}  // namespace

std::expected<std::optional<ParsedHttpRequest>, HttpRequestError> parseHttpRequest(
    std::string_view bytes) {
  bytes = bytes.substr(0, longestHttpRequestBytes);
  LineReader reader(bytes);
  auto line = readRequestLine(reader);
  if (!line) return Error(line.error());
  if (!*line) return std::nullopt;
  auto fields = readFields(reader);
  if (!fields) return Error(fields.error());
  if (!*fields) {
    if (bytes.size() == longestHttpRequestBytes) return Error(headerTooLong);
    return std::nullopt;
  }
  if (const auto checked = checkHttpHeader(**fields, (*line)->version); !checked) {
    return Error(checked.error());
  }
  HttpRequest request{.method = std::move((*line)->method),
                      .path = std::move((*line)->path),
                      .query = std::move((*line)->query),
                      .fields = **std::move(fields)};
  request.keepAlive = wantsKeepAlive(request.fields, (*line)->version);
  return ParsedHttpRequest{.request = std::move(request), .consumedBytes = reader.position()};
}

}  // namespace lanternfold
