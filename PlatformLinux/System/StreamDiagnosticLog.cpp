#include "PlatformLinux/System/StreamDiagnosticLog.h"

#include <algorithm>
#include <string>

namespace lanternfold {

void StreamDiagnosticLog::line(std::string_view text) {
  std::string whole(text);
  std::ranges::replace_if(
      whole, [](char character) { return character == '\n' || character == '\r'; }, ' ');
  whole += '\n';

  // One call for text and line end: the stream's own lock makes it one piece.
  std::fwrite(whole.data(), 1, whole.size(), stream_);
  std::fflush(stream_);
}

}  // namespace lanternfold
