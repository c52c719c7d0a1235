#include "PlatformLinux/System/StreamDiagnosticLog.h"

#include <cstddef>
#include <poll.h>
#include <string>
#include <utility>

#include <climits>

namespace lanternfold {
namespace {

/// The bytes of the control character that `text` begins with, in UTF-8; 0 for any other.
std::size_t controlLength(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  if (first < 0x20 || first == 0x7F) return 1;
  if (first != 0xC2 || text.size() < 2) return 0;
  const auto second = static_cast<unsigned char>(text[1]);
  return second >= 0x80 && second <= 0x9F ? 2 : 0;
}

/// `text` as one line that a terminal shows and does not obey.
std::string oneLine(std::string_view text) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string result;
  while (!text.empty()) {
    const std::size_t control = controlLength(text);
    if (control == 0) {
      result += text.front();
    } else if (text.front() == '\n' || text.front() == '\r') {
      result += ' ';
    } else {
      for (const char byte : text.substr(0, control)) {
        const auto value = static_cast<unsigned char>(byte);
        result += "\\x";
        result += digits[value >> 4U];
        result += digits[value & 0xFU];
      }
    }
    text.remove_prefix(control == 0 ? 1 : control);
  }
  return result;
}

/// Without waiting. A pipe says so only when it takes `PIPE_BUF` bytes in one piece.
bool takesALine(std::FILE* stream) {
  pollfd output{.fd = fileno(stream), .events = POLLOUT, .revents = 0};
  return ::poll(&output, 1, 0) == 1;
}

}  // namespace

void StreamDiagnosticLog::line(std::string_view text) {
  std::string whole = oneLine(text);
  const std::scoped_lock guard(mutex_);
  if (whenFull_ == WhenFull::loseLine) {
    if (!takesALine(stream_)) return;
    if (whole.size() >= PIPE_BUF) whole.resize(PIPE_BUF - 1);
  }
  whole += '\n';

  // One call for text and line end: the stream's own lock makes it one piece.
  std::fwrite(whole.data(), 1, whole.size(), stream_);
  std::fflush(stream_);
  afterLine_();
}

void StreamDiagnosticLog::setAfterLine(std::function<void()> afterLine) {
  const std::scoped_lock guard(mutex_);
  afterLine_ = std::move(afterLine);
}

}  // namespace lanternfold
