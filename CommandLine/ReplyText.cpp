#include "CommandLine/ReplyText.h"

#include <cstddef>
#include <glib.h>
#include <memory>
#include <optional>
#include <ranges>
#include <string_view>
#include <utility>

#include <nlohmann/json.hpp>

#include "Wiring/PrintableText.h"

namespace lanternfold {
namespace {

constexpr std::size_t bytesPerRow = 16;

bool isUtf8(std::string_view bytes) {
  return g_utf8_validate_len(bytes.data(), bytes.size(), nullptr) == TRUE;
}

/// Lines stay lines, and tabs tabs; what else could move a terminal's cursor is written out.
std::string printableLines(std::string_view text) {
  if (text.ends_with('\n')) text.remove_suffix(1);
  if (text.empty()) return "\n";
  std::string lines;
  for (const auto part : std::views::split(text, '\n')) {
    std::string_view line(part);
    if (line.ends_with('\r')) line.remove_suffix(1);
    bool isFirst = true;
    for (const auto cell : std::views::split(line, '\t')) {
      if (!std::exchange(isFirst, false)) lines += '\t';
      lines += printable(std::string_view(cell));
    }
    lines += '\n';
  }
  return lines;
}

std::string hexadecimal(std::size_t number, std::size_t digits) {
  constexpr std::string_view all = "0123456789abcdef";
  std::string text(digits, '0');
  for (; digits > 0; number /= 16) text[--digits] = all[number % 16];
  return text;
}

std::string rowsOfBytes(std::string_view bytes) {
  std::string rows;
  for (std::size_t offset = 0; offset < bytes.size(); offset += bytesPerRow) {
    rows += hexadecimal(offset, 8) + " ";
    for (const char each : bytes.substr(offset, bytesPerRow)) {
      rows += " " + hexadecimal(static_cast<unsigned char>(each), 2);
    }
    rows += '\n';
  }
  return rows;
}

std::string base64(std::string_view bytes) {
  const std::unique_ptr<gchar, decltype(&g_free)> text(
      g_base64_encode(reinterpret_cast<const guchar*>(bytes.data()), bytes.size()), g_free);
  return text.get();
}

}  // namespace

std::string replyText(const MessageReply& reply) {
  const std::string size = std::to_string(reply.data.size());
  std::string text = "From " + reply.from.value_or("an unknown peer") + ", " + size +
                     (reply.data.size() == 1 ? " byte:\n" : " bytes:\n");
  return text + (isUtf8(reply.data) ? printableLines(reply.data) : rowsOfBytes(reply.data));
}

std::string replyJson(const MessageReply& reply) {
  using Json = nlohmann::ordered_json;
  const Json text = isUtf8(reply.data) ? Json(reply.data) : Json(nullptr);
  const Json from = reply.from ? Json(*reply.from) : Json(nullptr);
  return Json{{"data", base64(reply.data)}, {"text", text}, {"from", from}}.dump() + "\n";
}

}  // namespace lanternfold
